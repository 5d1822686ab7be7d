#include "Views/Components/PrivacySettings.h"

#include <QDesktopServices>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace brimvale {

void openPrivacySettings(PrivacyPane pane) {
    const QString settings = u"x-apple.systempreferences:com.apple.preference.security?"_s;
    const QString name =
        pane == PrivacyPane::fullDiskAccess ? u"Privacy_AllFiles"_s : u"Privacy_AppBundles"_s;
    QDesktopServices::openUrl(QUrl(settings + name));
}

} // namespace brimvale
