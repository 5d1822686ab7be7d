#pragma once

#include <QColor>
#include <functional>
#include <optional>

class QObject;

namespace brimvale {

/// A light or a dark window, or one that follows the system.
enum class Appearance { system, light, dark };

/// What the system's settings say about the colours of all programs.
struct SystemAppearance {
    std::optional<bool> isDark;   ///< nothing: see the palette of the application
    std::optional<QColor> accent; ///< nothing: the system has none
    bool hasHighContrast = false;

    friend bool operator==(const SystemAppearance &, const SystemAppearance &) = default;
};

/// The settings as they are known now. Asks nobody, and is called whenever something is drawn.
[[nodiscard]] SystemAppearance systemAppearance();

/// Reads the settings without waiting for them, and again when they change, as long as `context` lives. Calls
/// `changed` when `systemAppearance` has changed and the palette of the application has not. For the main
/// thread.
void followSystemAppearance(QObject *context, std::function<void()> changed);

/// Gives this appearance to the parts of the windows that the system draws.
void useForSystemParts(Appearance appearance);

} // namespace brimvale
