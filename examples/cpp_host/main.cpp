// Imports one file: cpp_host FILE. Exit status 0 accepted and kept, 1 refused, 2 it could not be run.
#include <exception>
#include <iostream>

#include "adapters/sqlite/embedded_host.h"
#include "component/tremvik.h"

using Estado = tremvik::Outcome::Estado;

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

// The host and Consolidar throw what cannot be done with the folder; Monitora tells all by its outcome.
int Import(const char* file) {
  Console console;
  tremvik::EmbeddedHost host({.pasta = "tremvik-data"}, console, console, console);
  tremvik::Tremvik component(host.host());
  host.AcompanharLinha([&component] { return component.NroLinha(); });
  component.Monitora(file);
  const tremvik::Outcome& outcome = component.outcome();
  if (outcome.estado == Estado::kAceito) {
    host.Consolidar(outcome, file);
    return 0;
  }
  return outcome.estado == Estado::kRecusado ? 1 : 2;
}

int main(int argc, char** argv) try {
  return argc == 2 ? Import(argv[1]) : 2;
} catch (const std::exception& error) {  // a tremvik::RuntimeError, mostly
  std::cerr << "cpp_host: " << error.what() << '\n';
  return 2;
}
