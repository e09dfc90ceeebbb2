#pragma once

#include "platform/AlertHandler.h"
#include "platform/Alerts.h"
#include "platform/BackgroundQueue.h"
#include "platform/Bundle.h"
#include "platform/HotKeys.h"
#include "platform/HttpSession.h"
#include "platform/KeyInjector.h"
#include "platform/LocaleInfo.h"
#include "platform/LoginItem.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/Permissions.h"
#include "platform/Screens.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

namespace quillmark {

/// Everything the system needs of the operating system. The composition root gets one and hands out its parts.
struct Platform {
  Bundle bundle;
  OperatingSystem operatingSystem;
  MainQueue& mainQueue;
  BackgroundQueue& backgroundQueue;
  UserDefaults& defaults;
  LocaleInfo& locale;
  HttpSession& http;
  Pasteboard& pasteboard;
  KeyInjector& keyInjector;
  HotKeys& hotKeys;
  Workspace& workspace;
  Screens& screens;
  Alerts& alerts;
  Permissions& permissions;
  LoginItem& loginItem;
};

}  // namespace quillmark
