#pragma once

#include "host/application.h"
#include "host/components.h"
#include "host/diagnostics.h"
#include "host/events.h"
#include "host/files.h"
#include "host/reference_engine.h"
#include "host/screen.h"

namespace tremvik {

/// Everything outside the component that it may reach. All referred-to objects outlive the component.
struct Host {
  Screen& screen;
  Events& events;
  Diagnostics& diagnostics;
  Files& files;
  Application& application;
  ReferenceEngine& engine;
  ComponentFactory& components;
};

}  // namespace tremvik
