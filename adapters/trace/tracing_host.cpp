#include "adapters/trace/tracing_host.h"

#include "adapters/trace/tracing_components.h"

namespace tremvik {
namespace {

class TracingScreen final : public Screen {
 public:
  TracingScreen(Screen& inner, TraceSink& sink) : inner_(inner), sink_(sink) {}

  int MsgBox(std::string_view text, int style, std::string_view title) override {
    const int answer = inner_.MsgBox(text, style, title);
    sink_.Mensagem({text, style, title, answer});
    return answer;
  }
  void SetPointer(int pointer) override {
    sink_.Ponteiro(pointer);
    inner_.SetPointer(pointer);
  }

 private:
  Screen& inner_;
  TraceSink& sink_;
};

class TracingEvents final : public Events {
 public:
  TracingEvents(Events& inner, TraceSink& sink) : inner_(inner), sink_(sink) {}

  void Progresso() override {
    sink_.Evento("Progresso");
    inner_.Progresso();
  }
  void Fechar() override {
    sink_.Evento("Fechar");
    inner_.Fechar();
  }

 private:
  Events& inner_;
  TraceSink& sink_;
};

class TracingDiagnostics final : public Diagnostics {
 public:
  TracingDiagnostics(Diagnostics& inner, TraceSink& sink) : inner_(inner), sink_(sink) {}

  void Inconsistencia(const FaultLocation& where) override {
    sink_.Inconsistencia(where);
    inner_.Inconsistencia(where);
  }
  void Duvida(const FaultLocation& where) override {
    sink_.Duvida(where);
    inner_.Duvida(where);
  }

 private:
  Diagnostics& inner_;
  TraceSink& sink_;
};

class TracingFiles final : public Files {
 public:
  TracingFiles(Files& inner, TraceSink& sink) : inner_(inner), sink_(sink) {}

  bool Exists(std::string_view path) override {
    sink_.Arquivo("Exists", path);
    return inner_.Exists(path);
  }
  void Delete(std::string_view path) override {
    sink_.Arquivo("Delete", path);
    inner_.Delete(path);
  }
  void Rename(std::string_view from, std::string_view to) override {
    sink_.Arquivo("Rename", from);
    inner_.Rename(from, to);
  }
  int FreeFile() override { return inner_.FreeFile(); }
  void Open(int number, std::string_view path) override {
    sink_.Arquivo("Open", path);
    inner_.Open(number, path);
  }
  std::size_t Read(int number, char* buffer, std::size_t count) override {
    return inner_.Read(number, buffer, count);
  }
  void Close(int number) override {
    sink_.Arquivo("Close", {});
    inner_.Close(number);
  }
  void BeginRun() noexcept override { inner_.BeginRun(); }
  void EndRun() noexcept override { inner_.EndRun(); }

 private:
  Files& inner_;
  TraceSink& sink_;
};

}  // namespace

struct TracingHost::Parts {
  TracingScreen screen;
  TracingEvents events;
  TracingDiagnostics diagnostics;
  TracingFiles files;
  TracingComponents components;
};

TracingHost::TracingHost(const Host& inner, TraceSink& sink, TraceOptions options)
    : inner_(inner),
      options_(options),
      parts_(new Parts{{inner.screen, sink},
                       {inner.events, sink},
                       {inner.diagnostics, sink},
                       {inner.files, sink},
                       {inner.components, sink, options.gravacoes}}) {}

TracingHost::~TracingHost() = default;

Host TracingHost::host() const {
  Host host{parts_->screen,     parts_->events, parts_->diagnostics, inner_.files,
            inner_.application, inner_.engine,  parts_->components};
  if (!options_.arquivos) return host;
  return {host.screen,      host.events, host.diagnostics, parts_->files,
          host.application, host.engine, host.components};
}

}  // namespace tremvik
