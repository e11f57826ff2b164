// What the page calls in this module. Texts pass through memory: `room` gives the place where the page writes
// what its next call is about; a call gives the length in bytes of its answer, which lies at `answer`.
// Nothing is raised across this border: what goes wrong is an answer {"erro":…}.
#include <cstddef>
#include <exception>
#include <functional>
#include <new>
#include <nlohmann/json.hpp>
#include <string>

#include "page/session.h"
#include "text/json_text.h"

namespace {

using tremvik::page::Session;

// A module has one page, so it has one of each.
std::string g_room;    // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
std::string g_answer;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

Session& TheSession() {
  static Session session;
  return session;
}

std::size_t Answer(const std::function<std::string()>& work) {
  try {
    g_answer = work();
  } catch (const std::bad_alloc&) {
    g_answer = R"({"erro":"a memória não bastou"})";
  } catch (const std::exception& error) {
    g_answer = tremvik::text::JsonText({{"erro", error.what()}});
  }
  return g_answer.size();
}

}  // namespace

extern "C" {

// Room for `size` bytes; null when the memory does not suffice.
[[clang::export_name("room")]] char* Room(std::size_t size) {
  try {
    g_room = {};
    g_room.resize(size);
    return g_room.data();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

[[clang::export_name("answer")]] const char* AnswerText() { return g_answer.data(); }

// The room holds a file's name, `name_size` bytes, and then its content.
[[clang::export_name("examine")]] std::size_t Examine(std::size_t name_size, std::size_t limit,
                                                      bool answer_yes) {
  return Answer([&] {
    std::string name = g_room.substr(0, name_size);
    std::string bytes = g_room.substr(name_size);
    g_room = {};
    return TheSession().Examine(std::move(name), std::move(bytes),
                                {.limite = limit, .responder_sim = answer_yes});
  });
}

// The room holds the name of the form.
[[clang::export_name("report")]] std::size_t Report(bool masked) {
  return Answer([&] { return TheSession().Report(g_room, masked); });
}

[[clang::export_name("forget")]] void Forget() { TheSession().Forget(); }

[[clang::export_name("rules")]] std::size_t Rules() { return Answer(tremvik::page::RulesAsJson); }

// The room holds the message.
[[clang::export_name("search")]] std::size_t Search() {
  return Answer([] { return tremvik::page::SearchAsJson(g_room); });
}

[[clang::export_name("records")]] std::size_t Records(std::size_t file, int from, int to) {
  return Answer([&] { return TheSession().Records(file, from, to); });
}

}  // extern "C"
