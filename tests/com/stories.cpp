// The program of the C++ clients: the test cases, or with --stories=LIST a host in C++, early bound through
// the dual interface, with a listener for the events.
#include <fstream>
#include <iostream>
#include <sstream>

#include "com_support.h"

namespace tremvik::com_test {
namespace {

void Import(const std::string& file, LateBound& journal) {
  const auto tremvik = Make();
  Sink sink([&](DISPID event) {
    journal.Call(L"Event", std::string_view(event == 1 ? "Progresso" : event == 2 ? "Fechar" : "?"));
  });
  const DWORD cookie = sink.Hear(tremvik);
  EXPECT_EQ(tremvik->put_bolRetMonitora(VARIANT_FALSE), S_OK);
  EXPECT_EQ(Monitora(tremvik, file), S_OK);
  VARIANT_BOOL refused = VARIANT_FALSE;
  Variant line;
  EXPECT_EQ(tremvik->get_bolRetMonitora(&refused), S_OK);
  EXPECT_EQ(tremvik->get_NroLinha(&line.raw()), S_OK);
  EXPECT_EQ(line.raw().vt, VT_I2);
  EXPECT_EQ(EventsOf(tremvik)->Unadvise(cookie), S_OK);
  journal.Call(L"End", std::int16_t{refused}, line.raw().iVal, std::string_view(Mensagem(tremvik)));
}

// Runs the stories of a list file; a line each: input file, answer (6 or 7), the host's fault and the
// journal, parted by "|". The exit status of the program.
int RunStories(const char* list) {
  Apartment apartment;
  std::ifstream stories(list);
  for (std::string line; std::getline(stories, line);) {
    std::istringstream parts(line);
    std::string file, answer, fault, journal;
    for (std::string* part : {&file, &answer, &fault, &journal})
      std::getline(parts, *part, part == &journal ? '\r' : '|');
    apartment.Begin(journal, answer, fault);
    Import(file, apartment.journal());
  }
  apartment.journal().Call(L"Stop");
  std::cout << "DONE\n";
  return testing::UnitTest::GetInstance()->Failed() ? 1 : 0;
}

}  // namespace
}  // namespace tremvik::com_test

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  const std::string_view wanted = count > 1 ? arguments[1] : "";
  constexpr std::string_view kStories = "--stories=";
  if (wanted.starts_with(kStories)) return tremvik::com_test::RunStories(arguments[1] + kStories.size());
  return RUN_ALL_TESTS();
}
