// Validates one file: cpp_host FILE. Exit status 0 accepted, 1 refused, 2 no file named.
#include <iostream>

#include "adapters/sqlite/embedded_host.h"
#include "component/tremvik.h"

struct Console : tremvik::Screen, tremvik::Events, tremvik::Diagnostics {
  int MsgBox(std::string_view text, int /*style*/, std::string_view title) override {
    std::cout << title << '\n' << text << '\n';
    return tremvik::resposta::kNao;
  }
  void Inconsistencia(const tremvik::FaultLocation& where) override {
    std::cout << "line " << where.linha << ", column " << where.posicao << ", " << where.campo << '\n';
  }
  void Duvida(const tremvik::FaultLocation& /*where*/) override {}
  void SetPointer(int /*pointer*/) override {}
  void Progresso() override {}
  void Fechar() override {}
};

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Console console;
  tremvik::EmbeddedHost host({.pasta = "tremvik-data", .modo = tremvik::Modo::kValidar}, console, console,
                             console);
  tremvik::Tremvik component(host.host());
  host.AcompanharLinha([&component] { return component.NroLinha(); });
  component.Monitora(argv[1]);
  return component.bolRetMonitora() ? 1 : 0;
}
