#include "tests/faults/failing_disk.h"

#include <sqlite3.h>

#include <cstddef>

namespace tremvik::test {
namespace {

FaultPlan* g_plan = nullptr;
sqlite3_vfs* g_disk = nullptr;  // the real one

// True when this operation is to fail.
bool Fails() { return g_plan != nullptr && g_plan->Strikes(); }

// A file of ours; the real one lies behind it in the same piece of memory.
struct alignas(std::max_align_t) File {
  sqlite3_file base;
};

sqlite3_file* Real(sqlite3_file* file) {
  return reinterpret_cast<sqlite3_file*>(reinterpret_cast<File*>(file) + 1);
}

int Close(sqlite3_file* file) { return Real(file)->pMethods->xClose(Real(file)); }
int Read(sqlite3_file* file, void* to, int count, sqlite3_int64 at) {
  return Fails() ? SQLITE_IOERR_READ : Real(file)->pMethods->xRead(Real(file), to, count, at);
}
// A failing write may have written a part of it.
int Write(sqlite3_file* file, const void* from, int count, sqlite3_int64 at) {
  if (!Fails()) return Real(file)->pMethods->xWrite(Real(file), from, count, at);
  Real(file)->pMethods->xWrite(Real(file), from, count / 2, at);
  return SQLITE_FULL;
}
int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  return Fails() ? SQLITE_IOERR_TRUNCATE : Real(file)->pMethods->xTruncate(Real(file), size);
}
int Sync(sqlite3_file* file, int flags) {
  return Fails() ? SQLITE_IOERR_FSYNC : Real(file)->pMethods->xSync(Real(file), flags);
}
int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  return Fails() ? SQLITE_IOERR_FSTAT : Real(file)->pMethods->xFileSize(Real(file), size);
}
int Lock(sqlite3_file* file, int level) {
  return Fails() ? SQLITE_IOERR_LOCK : Real(file)->pMethods->xLock(Real(file), level);
}
int Unlock(sqlite3_file* file, int level) { return Real(file)->pMethods->xUnlock(Real(file), level); }
int CheckReservedLock(sqlite3_file* file, int* held) {
  return Real(file)->pMethods->xCheckReservedLock(Real(file), held);
}
int FileControl(sqlite3_file* file, int operation, void* argument) {
  return Real(file)->pMethods->xFileControl(Real(file), operation, argument);
}
int SectorSize(sqlite3_file* file) { return Real(file)->pMethods->xSectorSize(Real(file)); }
int Characteristics(sqlite3_file* file) { return Real(file)->pMethods->xDeviceCharacteristics(Real(file)); }

int Open(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* out_flags) {
  static const sqlite3_io_methods kMethods{1,
                                           Close,
                                           Read,
                                           Write,
                                           Truncate,
                                           Sync,
                                           FileSize,
                                           Lock,
                                           Unlock,
                                           CheckReservedLock,
                                           FileControl,
                                           SectorSize,
                                           Characteristics,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr};
  file->pMethods = nullptr;
  if (Fails()) return SQLITE_CANTOPEN;
  const int code = g_disk->xOpen(g_disk, name, Real(file), flags, out_flags);
  if (code == SQLITE_OK) file->pMethods = &kMethods;
  return code;
}

int Delete(sqlite3_vfs* /*vfs*/, const char* name, int sync) {
  return Fails() ? SQLITE_IOERR_DELETE : g_disk->xDelete(g_disk, name, sync);
}

void StandInFront() {
  if (g_disk != nullptr) return;
  g_disk = sqlite3_vfs_find(nullptr);
  static sqlite3_vfs ours = *g_disk;
  ours.zName = "failing";
  ours.szOsFile = static_cast<int>(sizeof(File)) + g_disk->szOsFile;
  ours.xOpen = Open;
  ours.xDelete = Delete;
  sqlite3_vfs_register(&ours, 1);
}

}  // namespace

void PlanDisk(FaultPlan* plan) {
  StandInFront();
  g_plan = plan;
}

}  // namespace tremvik::test
