#include "Views/Components/SystemAppearance.h"

#include "Views/Components/Linux/AppearancePortal.h"

#include <utility>

namespace brimvale {

namespace {

SystemAppearance knownAppearance;

} // namespace

SystemAppearance systemAppearance() {
    return knownAppearance;
}

void followSystemAppearance(QObject *context, std::function<void()> changed) {
    auto *portal = new AppearancePortal(context);
    QObject::connect(portal, &AppearancePortal::answered, context,
                     [changed = std::move(changed)](const SystemAppearance &appearance) {
                         if (std::exchange(knownAppearance, appearance) != appearance)
                             changed();
                     });
    QObject::connect(portal, &QObject::destroyed, [] { knownAppearance = {}; });
}

// The window manager draws the title bars, and no program can choose their colours.
void useForSystemParts(Appearance) {}

} // namespace brimvale
