#include "window/theme.h"

#include <QApplication>
#include <QCoreApplication>
#include <QPalette>
#include <array>

namespace marovia {
namespace {

struct Theme {
  const char* name;
  QRgb window, base, button, text, highlight, highlightedText;
};

constexpr std::array kThemes = {Theme{QT_TRANSLATE_NOOP("Theme", "Light"), 0xfff3f3f3, 0xffffffff,
                                      0xfff8f8f8, 0xff1c1c1c, 0xff1f6fd0, 0xffffffff},
                                Theme{QT_TRANSLATE_NOOP("Theme", "Dark"), 0xff26282b, 0xff1b1d1f,
                                      0xff34373b, 0xffe8e8e8, 0xff4c9bf0, 0xff101010},
                                Theme{QT_TRANSLATE_NOOP("Theme", "High contrast"), 0xff000000,
                                      0xff000000, 0xff000000, 0xffffffff, 0xffffff00, 0xff000000}};

QString NameOf(const Theme& theme) {
  return QCoreApplication::translate("Theme", theme.name);
}

QColor Faded(QRgb colour) {
  QColor faded = QColor::fromRgb(colour);
  faded.setAlpha(120);
  return faded;
}

QPalette PaletteOf(const Theme& theme) {
  QPalette palette(QColor::fromRgb(theme.button), QColor::fromRgb(theme.window));
  const auto set = [&](std::initializer_list<QPalette::ColorRole> roles, QRgb colour) {
    for (const auto role : roles) palette.setColor(role, QColor::fromRgb(colour));
  };
  set({QPalette::Base, QPalette::ToolTipBase, QPalette::AlternateBase}, theme.base);
  set({QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText},
      theme.text);
  set({QPalette::Highlight, QPalette::Link}, theme.highlight);
  set({QPalette::HighlightedText}, theme.highlightedText);
  palette.setColor(QPalette::PlaceholderText, Faded(theme.text));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, Faded(theme.text));
  return palette;
}

}  // namespace

QStringList ThemeNames() {
  QStringList names = {QCoreApplication::translate("Theme", "As the desktop")};
  for (const Theme& theme : kThemes) names << NameOf(theme);
  return names;
}

void SetTheme(const QString& name) {
  const auto* theme = std::ranges::find(kThemes, name, NameOf);
  QApplication::setPalette(theme == kThemes.end() ? QPalette() : PaletteOf(*theme));
}

}  // namespace marovia
