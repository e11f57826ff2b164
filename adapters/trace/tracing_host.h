// A host in front of another one that reports what passes through it.
#pragma once

#include <memory>

#include "adapters/trace/trace_sink.h"
#include "host/host.h"

namespace tremvik {

/// Wraps any host: every call goes on to it unchanged and is reported to a sink. What the wrapped host raises
/// comes out as it is; a box or a question that failed is not reported, as it has no answer.
class TracingHost {
 public:
  /// `inner`'s objects and `sink` must outlive this object, and this object every component made with it.
  TracingHost(const Host& inner, TraceSink& sink, TraceOptions options = {});
  ~TracingHost();
  TracingHost(const TracingHost&) = delete;
  TracingHost& operator=(const TracingHost&) = delete;

  /// The host to create the component with.
  [[nodiscard]] Host host() const;

 private:
  struct Parts;
  Host inner_;
  TraceOptions options_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace tremvik
