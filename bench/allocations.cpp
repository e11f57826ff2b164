// Counts the allocations of the component on files of N and 2N records; what the second has more, by N, is
// what an accepted record costs. The host allocates nothing, and the look-ups of the reference tables are
// remembered from a first run, so every allocation counted is the component's own. Exit status 1 where
// records cost any.
#include <cstdlib>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "adapters/local/documents.h"
#include "cli/exemplo/exemplo.h"
#include "component/tremvik.h"
#include "fuzz/memory_host.h"

namespace {

long g_allocations = 0;

void* Allocate(std::size_t size) {
  ++g_allocations;
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace tremvik::bench {
namespace {

constexpr int kRecords = 10000;
// Texts that the run keeps and uses again grow to the longest one met, and a longer file may hold a longer
// one. What is done for each record or declaration comes hundreds of times more.
constexpr long kGrowth = 4;

// One file in memory; records are taken and forgotten.
class QuietHost final : public Screen,
                        public Events,
                        public Diagnostics,
                        public Files,
                        public Application,
                        public ComponentFactory {
 public:
  QuietHost(fuzz::References& references, std::string_view file) : references_(references), file_(file) {}
  [[nodiscard]] Host host() { return {*this, *this, *this, *this, *this, references_.engine(), *this}; }
  [[nodiscard]] int records() const { return records_; }

  int MsgBox(std::string_view /*text*/, int /*style*/, std::string_view /*title*/) override {
    return resposta::kNao;
  }
  void SetPointer(int /*pointer*/) override {}
  void Progresso() override {}
  void Fechar() override {}
  void Inconsistencia(const FaultLocation& where) override {
    std::cerr << "line " << where.linha << ", " << where.registro << '.' << where.campo << " is refused\n";
  }
  void Duvida(const FaultLocation& /*where*/) override {}
  bool Exists(std::string_view /*path*/) override { return false; }
  void Delete(std::string_view /*path*/) override {}
  void Rename(std::string_view /*from*/, std::string_view /*to*/) override {}
  int FreeFile() override { return 1; }
  void Open(int /*number*/, std::string_view /*path*/) override { at_ = 0; }
  std::size_t Read(int /*number*/, char* buffer, std::size_t count) override {
    const std::size_t got = file_.copy(buffer, count, at_);
    at_ += got;
    return got;
  }
  void Close(int /*number*/) override {}
  std::string AppPath() override { return references_.path(); }
  std::string GetSetting(std::string_view /*application*/, std::string_view /*section*/,
                         std::string_view /*key*/, std::string_view /*fallback*/) override {
    return {};
  }
  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override { return std::make_unique<Banco>(); }
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override {
    return std::make_unique<Consulta>();
  }
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override {
    return std::make_unique<ValidadorDocumentosLocal>();
  }
  std::unique_ptr<Gravador> CriarGravador(Gravavel /*registro*/) override {
    return std::make_unique<Counter>(records_);
  }

 private:
  struct Banco final : BancoTemporario {
    void Preparar() override {}
    std::int16_t Abrir(std::string_view /*caminho*/) override { return 1; }
    void Encerrar(std::string_view /*caminho*/) override {}
  };
  struct Consulta final : ConsultaDeclaracoes {
    void CaminhoBase(std::string_view /*caminho*/) override {}
    bool Existe(std::string_view /*ie*/, std::string_view /*uf*/, std::string_view /*regime*/,
                std::string_view /*referencia*/, std::string_view /*referencia_inicial*/) override {
      return false;
    }
  };
  struct Counter final : Gravador {
    explicit Counter(int& records) : records_(records) {}
    void CaminhoBase(std::string_view /*caminho*/) override {}
    void Campo(std::string_view /*nome*/, std::string_view /*texto*/) override {}
    void Gravar() override { ++records_; }
    int& records_;
  };

  fuzz::References& references_;
  std::string_view file_;
  std::size_t at_ = 0;
  int records_ = 0;
};

// Allocations of one accepted run over `file`; ends the program where it is not accepted whole.
long Run(fuzz::References& references, std::string_view file, int records) {
  QuietHost host(references, file);
  Tremvik tremvik(host.host());
  const long before = g_allocations;
  tremvik.Monitora("entrada.txt");
  const long allocations = g_allocations - before;
  if (tremvik.bolRetMonitora() || host.records() != records - 1) {  // the master record has no writer
    std::cerr << "the file was not accepted: " << tremvik.Mensagem() << '\n';
    std::exit(2);
  }
  return allocations;
}

// The second run's, in which every look-up is known.
long Allocations(fuzz::References& references, int records) {
  const std::string file = exemplo::Gerar({.registros = records});
  Run(references, file, records);
  return Run(references, file, records);
}

}  // namespace
}  // namespace tremvik::bench

int main() {
  using namespace tremvik::bench;
  tremvik::fuzz::References references;
  const long once = Allocations(references, kRecords);
  const long twice = Allocations(references, 2 * kRecords);
  std::cout << "allocations: " << once << " in a file of " << kRecords << " records, " << twice
            << " in one of " << 2 * kRecords << "; " << static_cast<double>(twice - once) / kRecords
            << " a record\n";
  return twice - once <= kGrowth ? 0 : 1;
}
