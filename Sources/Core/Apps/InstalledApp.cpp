#include "Core/Apps/InstalledApp.h"

#include <variant>

namespace brimvale {

namespace {

struct KindTexts {
    const char *title;
    const char *identifier;
};

KindTexts textsOf(AppKind kind) {
    switch (kind) {
    case AppKind::bundle:
        return {"", "bundle"};
    case AppKind::package:
        return {"Package", "package"};
    case AppKind::flatpak:
        return {"Flatpak", "flatpak"};
    case AppKind::snap:
        return {"Snap", "snap"};
    case AppKind::appImage:
        return {"AppImage", "appimage"};
    case AppKind::byHand:
        return {"By hand", "by-hand"};
    case AppKind::steamGame:
        return {"Steam game", "steam-game"};
    case AppKind::webApp:
        return {"Web app", "web-app"};
    case AppKind::windowsProgram:
        return {"Windows program", "windows-program"};
    }
    return {"", ""};
}

} // namespace

const char *title(AppKind kind) {
    return textsOf(kind).title;
}

const char *identifier(AppKind kind) {
    return textsOf(kind).identifier;
}

bool InstalledApp::hasSize() const {
    if (knownSize)
        return *knownSize > 0;
    return kind == AppKind::bundle || kind == AppKind::flatpak ||
           std::holds_alternative<RemovedAsItem>(removal);
}

} // namespace brimvale
