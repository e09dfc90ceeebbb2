#include <QApplication>
#include <QDBusConnection>
#include <QLibraryInfo>
#include <QLocale>
#include <QScreen>
#include <QTranslator>
#include <csignal>
#include <string>
#include <vector>

#include <sys/signalfd.h>
#include <unistd.h>

#include "base/Localization.h"
#include "base/Log.h"
#include "base/ScopeExit.h"
#include "base/Trace.h"
#include "panels/menu/views/CommandMenuView.h"
#include "panels/review/views/ReviewView.h"
#include "panels/views/LoadingWindow.h"
#include "platform/desktop/DBusService.h"
#include "platform/desktop/DesktopAppearance.h"
#include "platform/desktop/QtAlerts.h"
#include "platform/desktop/QtMainQueue.h"
#include "platform/desktop/QtPanelWindow.h"
#include "platform/desktop/SingleInstance.h"
#include "platform/desktop/SocketWatch.h"
#include "platform/desktop/TrayHost.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/posix/AutostartLoginItem.h"
#include "platform/posix/CurlHttpSession.h"
#include "platform/posix/DataDirectory.h"
#include "platform/posix/IcuLocaleInfo.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "platform/posix/SystemInfo.h"
#include "platform/posix/ThreadQueue.h"
#include "shell/QuillmarkApp.h"
#include "shell/views/TaskBarEntry.h"
#include "shell/views/TrayMenu.h"
#include "widgets/Accessibility.h"
#include "widgets/Look.h"

namespace {

using namespace quillmark;

/// The command line without the program's name.
struct CommandLine {
  std::string dataDirectory;           ///< empty: the user's
  std::vector<std::string> arguments;  ///< what to hand over to a running instance
};

CommandLine parse(int argc, char** argv) {
  CommandLine line;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--data-dir" && i + 1 < argc) {
      line.dataDirectory = argv[++i];
    } else {
      line.arguments.push_back(argument);
    }
  }
  return line;
}

/// A descriptor that becomes readable when a signal asks the program to end. Call before other threads start.
int endRequests() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGHUP);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

void tellAboutStoredData(const SqliteUserDefaults& defaults, AlertHandler& alerts) {
  if (const auto& place = defaults.setAside()) {
    alerts.show(AlertKind::notice(
        tr("Stored Settings Were Damaged"),
        tr("Quillmark could not read its stored settings and has started with new ones. The old file is kept as {}.",
           *place)));
  }
  if (const auto& problem = defaults.problem()) {
    alerts.show(AlertKind::notice(tr("Settings Can't Be Stored"), *problem));
  }
}

}  // namespace

int main(int argc, char** argv) {
  trace::open();
  trace::mark(trace::processStarted);
  const CommandLine line = parse(argc, argv);
  const int endDescriptor = endRequests();

  QApplication::setApplicationName("quillmark");
  QApplication::setApplicationDisplayName("Quillmark");
  QApplication::setDesktopFileName("org.quillmark.Quillmark");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setWindowIcon(programIcon());

  DBusService service;
  switch (SingleInstance::claim(QDBusConnection::sessionBus(), service, line.arguments)) {
    case SingleInstance::Start::first:
      break;
    case SingleInstance::Start::handedOver:
      log("Quillmark is already running");
      return 0;
    case SingleInstance::Start::noAnswer:
      log("Quillmark is already running but does not answer");
      return 1;
  }

  QtMainQueue queue;
  ThreadQueue background;
  SqliteUserDefaults defaults(defaultsFile(dataDirectory(line.dataDirectory)));
  const SocketWatch otherProcesses(defaults.changeDescriptor(), [&defaults] { defaults.handleChange(); });
  const Bundle& ownBundle = bundle();
  const std::string language = useInterfaceLanguage(defaults, ownBundle);
  QTranslator toolkitTexts;
  if (toolkitTexts.load(QStringLiteral("qtbase_") + QString::fromStdString(language),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&toolkitTexts);
  }
  IcuLocaleInfo locale(language);
  CurlHttpSession http;
  look::apply({});
  const DesktopAppearance appearance(QDBusConnection::sessionBus(), look::apply);
  if (QLocale(QString::fromStdString(language)).textDirection() == Qt::RightToLeft) {
    QApplication::setLayoutDirection(Qt::RightToLeft);
  }
  const auto session = openWindowSystem(queue, ownBundle.identifier.value_or(""));
  WindowHints& hints = session->windowHints();

  AutostartLoginItem loginItem(autostartDirectory(), executablePath());

  installAccessibility();
  LoadingWindow loadingWindow(hints);
  QtPanelWindow reviewWindow(hints, QtPanelWindow::Kind::panel, look::windowRadius);
  QtPanelWindow menuWindow(hints, QtPanelWindow::Kind::panel, look::windowRadius);
  QtAlerts alerts(hints, {&menuWindow, &reviewWindow});
  QuillmarkApp quillmark({ownBundle, operatingSystem(), queue, background, defaults, locale, http,
                          session->pasteboard(), session->keyInjector(), session->hotKeys(), session->workspace(),
                          session->screens(), alerts, session->permissions(), loginItem},
                         {&loadingWindow, reviewWindow, menuWindow},
                         {AppConfig::localPortOfEnvironment(), [] { QApplication::quit(); }});
  tellAboutStoredData(defaults, quillmark.alertHandler());
  if (const auto problem = session->problem()) {
    quillmark.alertHandler().show(AlertKind::notice(tr("Session Not Supported"), *problem));
  }

  // Created now, so that the first panel opens as fast as later ones.
  ReviewView reviewView(quillmark.reviewPanel(), quillmark.reviewViewState(), session->pasteboard());
  reviewWindow.setContent(reviewView);
  reviewWindow.setResizable(true);
  CommandMenuView menuView(quillmark.commandPanel());
  menuWindow.setContent(menuView);
  menuWindow.setContentSize({double(menuView.sizeHint().width()), double(menuView.sizeHint().height())});

  service.activate = [](const std::vector<std::string>&) { log("A second start was handed over to this one"); };
  service.runCommand = [&quillmark](const std::string& slug) {
    if (!quillmark.promptStore().commandForSlug(slug)) {
      return false;
    }
    quillmark.triggerCommand(slug);
    return true;
  };
  service.openCommandMenu = [&quillmark] { quillmark.triggerCommandMenu(); };
  service.service = [&quillmark](const std::string& text) { quillmark.serviceProvider().service(text); };

  TrayHost trayHost(hints);
  TrayMenu tray(trayHost, [&quillmark] { return quillmark.menuBar().items(); });
  const auto menuChanges = quillmark.menuBar().changed.connect([&tray] { tray.refresh(); });

  TaskBarEntry taskBarEntry([&quillmark] { quillmark.openSettings(); });
  taskBarEntry.setShown(quillmark.showDockIcon.get());
  const auto dockIconChanges =
      quillmark.showDockIcon.observe([&taskBarEntry](bool shown) { taskBarEntry.setShown(shown); });

  const SocketWatch end(endDescriptor, [] { QApplication::quit(); });
  queue.async([&http] {
    trace::mark(trace::ready);
    http.warmUp();  // so that the first run does not wait for it
  });
  // Declared last, so that no thread uses what is destroyed at the end of this function.
  const ScopeExit threadsEnd([&http, &background] {
    http.stop();
    background.stop();
  });
  return QApplication::exec();
}
