// Draws every state of the panels, with their real views, and saves the pictures. One run draws one scheme in one
// language; the scale is the toolkit's (QT_SCALE_FACTOR).

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <functional>
#include <iostream>

#include <CLI/CLI.hpp>

#include "base/Localization.h"
#include "base/Log.h"
#include "panels/menu/views/CommandMenuView.h"
#include "panels/review/views/ReviewView.h"
#include "platform/desktop/QtPanelWindow.h"
#include "platform/posix/IcuLocaleInfo.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "shell/QuillmarkApp.h"
#include "shots/SymbolSheet.h"
#include "widgets/Look.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

const std::string original =
    "The quick brown fox jump over the lazy dog. It was a bright cold day in april, and the clocks was striking "
    "thirteen.\nNobody have noticed the fox, exept for the dog.\nThe colour of the evening sky were grey.";
const std::string improved =
    "The quick brown fox jumps over the lazy dog. It was a bright, cold day in April, and the clocks were striking "
    "thirteen.\nNobody noticed the fox, except for the dog.\nAnd so the story ends.";
const std::string arabicOriginal = "السماء زرقاء جدا اليوم.\nذهب الولد الى المدرسه مبكرا.";
const std::string arabicImproved = "السماء زرقاء جدًا اليوم.\nذهب الولد إلى المدرسة مبكرًا.";
const std::string markdown =
    "# A day in April\n\nIt was a **bright**, *cold* day, and the clocks were striking `13`.\n\n## What happened\n\n"
    "- The fox jumped over the [lazy dog](https://example.org)\n- Nobody noticed, *except for the dog*\n\n"
    "1. The clocks struck\n2. The sky turned grey, and it stayed so for the rest of an evening that nobody would "
    "remember\n\n> The story ends here.\n\n---\n\n### Afterword\nPlain text with **bold words** in it.";

/// The simulated desktop, with the real names of languages.
Platform platformWith(const Platform& platform, LocaleInfo& locale) {
  return {platform.bundle,      platform.operatingSystem,
          platform.mainQueue,   platform.backgroundQueue,
          platform.defaults,    locale,
          platform.http,        platform.pasteboard,
          platform.keyInjector, platform.hotKeys,
          platform.workspace,   platform.screens,
          platform.alerts,      platform.permissions,
          platform.loginItem};
}

class Shots {
 public:
  Shots(const QString& directory, const std::string& scheme, const std::string& language)
      : directory_(directory),
        name_(QString::fromStdString(scheme + "-" + language) + "-" + QString::number(qApp->devicePixelRatio())),
        locale_(language) {
    QDir().mkpath(directory_);
    reviewWindow_.setContent(review_);
    reviewWindow_.setResizable(true);
    menuWindow_.setContent(menu_);
    menuWindow_.setContentSize({double(menu_.sizeHint().width()), double(menu_.sizeHint().height())});
    app_.services().actionService.defaultBehavior.set(ActionBehavior::showReview);
    for (std::size_t i = 0; i < 3; ++i) {
      auto& providers = app_.services().providerStore;
      (void)providers.changeConfig(providers.configs.get()[i].id, [](auto& config) { config.enabled = true; });
    }
    settle();
  }

  void review(bool arabic) {
    const std::string& from = arabic ? arabicOriginal : original;
    const std::string& to = arabic ? arabicImproved : improved;
    auto& session = app_.reviewPanel();
    const SimulatedHttpSession::Exchange* request = nullptr;
    const auto run = [&](const std::function<void()>& start) {
      start();
      request = &desktop_.http.exchanges.back();
    };
    const auto open = [&](const std::string& initial) {
      run([&] {
        const Command command = *app_.promptStore().commandFor(ActionCase::fixGrammar);
        session.setCommand(command);
        session.open("", initial);
        session.execute(command, initial);
      });
    };
    const auto show = [&](const std::string& text) {
      if (!text.empty()) {
        request->bytes(text);
      }
      request->end();
      settle();
    };
    const auto showAgain = [&](const std::string& text) {
      run([&] { session.reload(); });
      show(text);
    };
    open(from);
    shoot("review-waiting", reviewWindow_);
    request->bytes(to.substr(0, to.find('\n')));
    shoot("review-streaming", reviewWindow_);
    show(to.substr(to.find('\n')));
    using enum ReviewViewMode;
    for (const auto& [mode, name] :
         {std::pair{ReviewViewMode::text, "text"}, {lineByLine, "lines"}, {wordByWord, "words"}}) {
      app_.reviewViewState().setViewMode(mode);
      shoot(std::string("review-") + name, reviewWindow_);
    }
    app_.reviewViewState().setViewMode(styled);
    showAgain(markdown);
    shoot("review-styled", reviewWindow_);
    showAgain(markdown + "\n" + markdown + "\n" + markdown);
    shoot("review-long", reviewWindow_);
    session.discard();
    open(from);
    app_.reviewViewState().setViewMode(text);
    show(to);
    review_.modelMenu().open();
    shoot("review-models", reviewWindow_);
    review_.modelMenu().dismiss();
    review_.applyButton().setFocus();
    shoot("review-focus", reviewWindow_);
    showAgain("");
    shoot("review-error", reviewWindow_);
    session.discard();
    open("");
    show(to);
    shoot("review-without-comparison", reviewWindow_);
    session.discard();
  }

  void commandMenu() {
    auto& panel = app_.commandPanel();
    panel.togglePanel(InvocationSource::menuBar);
    shoot("menu", menuWindow_);
    panel.view().keyDown(KeyPressModifier::downArrow);
    panel.view().keyDown(KeyPressModifier::downArrow);
    shoot("menu-third", menuWindow_);
    panel.setSearchText("tr");
    shoot("menu-search", menuWindow_);
    panel.view().hover(1);
    shoot("menu-hover", menuWindow_);
    panel.setSearchText("xyzzy");
    shoot("menu-nothing", menuWindow_);
    panel.toggleMode();
    shoot("menu-freestyle", menuWindow_);
    panel.setSearchText(
        "Write this as a limerick about a fox, with a dog in the last line, and keep the clocks in it.");
    shoot("menu-task", menuWindow_);
    panel.cancel();
  }

  void symbols() { symbolSheet(QApplication::palette(), qApp->devicePixelRatio()).save(file("symbols")); }

 private:
  QString file(const std::string& state) const {
    return directory_ + "/" + QString::fromStdString(state) + "-" + name_ + ".png";
  }

  void settle() {
    for (int i = 0; i < 4; ++i) {
      desktop_.background.run();
      desktop_.advance(200ms);
      QCoreApplication::sendPostedEvents();
      QCoreApplication::processEvents();
    }
  }

  /// The window on a ground that stands for what lies behind it.
  void shoot(const std::string& state, QWidget& window) {
    QApplication::setActiveWindow(&window);
    settle();
    const QPixmap picture = window.grab();
    const double scale = picture.devicePixelRatio();
    constexpr int margin = 24;
    QImage image(picture.size() + QSize(2 * margin, 2 * margin) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(look::scheme(QApplication::palette()) == look::Scheme::dark ? QColor(0x3A4250) : QColor(0xB8C4D6));
    QPainter painter(&image);
    painter.drawPixmap(margin, margin, picture);
    painter.end();
    image.save(file(state));
  }

  QString directory_;
  QString name_;
  SimulatedDesktop desktop_;
  WindowHints hints_;
  QtPanelWindow reviewWindow_{hints_, QtPanelWindow::Kind::panel, look::windowRadius};
  QtPanelWindow menuWindow_{hints_, QtPanelWindow::Kind::panel, look::windowRadius};
  IcuLocaleInfo locale_;
  QuillmarkApp app_{platformWith(desktop_.platform(), locale_), {nullptr, reviewWindow_, menuWindow_}, {}};
  ReviewView review_{app_.reviewPanel(), app_.reviewViewState(), desktop_.pasteboard};
  CommandMenuView menu_{app_.commandPanel()};
};

}  // namespace
}  // namespace quillmark

int main(int argc, char** argv) {
  using namespace quillmark;
  std::string out = "build/shots";
  std::string scheme = "light";
  std::string language = "en";
  std::string catalogues;
  CLI::App options{"Pictures of every state of the panels"};
  options.add_option("--out", out, "directory of the pictures");
  options.add_option("--scheme", scheme, "light or dark")->check(CLI::IsMember({"light", "dark"}));
  options.add_option("--language", language, "of the interface; ar mirrors the layout and shows Arabic texts");
  options.add_option("--catalogues", catalogues, "directory of the translations");
  CLI11_PARSE(options, argc, argv);

  setLogSink([](std::string_view) {});
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  localization::useLanguage(language, catalogues);
  QApplication::setLayoutDirection(language == "ar" ? Qt::RightToLeft : Qt::LeftToRight);
  look::apply({scheme == "dark" ? look::Scheme::dark : look::Scheme::light, std::nullopt});
  Shots shots(QString::fromStdString(out), scheme, language);
  shots.review(language == "ar");
  shots.commandMenu();
  shots.symbols();
}
