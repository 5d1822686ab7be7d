#include "Views/Browse/ScanMessage.h"

#include "Catalogs/Words.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Volumes.h"
#include "Platform/Folder.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QFontMetrics>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int widestPath = 400;

} // namespace

ScanMessage::ScanMessage(const ScanSession &scan, const Volumes &volumes, QWidget *parent)
    : StateMessage(parent), scan_(scan), volumes_(volumes) {}

void ScanMessage::showState() {
    if (scan_->isScanning)
        setMessage(QStringLiteral("search"), u"Scanning…"_s,
                   u"The outline and the treemap appear when the scan is done. You can stop at any time. "
                   "Scanning never changes your files."_s);
    else if (scan_->tree == nullptr)
        setMessage(QStringLiteral("folder-tree"), u"See what takes up space"_s,
                   u"Press Scan to measure the place chosen above, or choose another folder. Scanning "
                   "never changes your files."_s);
    else
        showWhyItIsEmpty(scan_->tree->path()); // another folder may have been chosen since the scan began
}

void ScanMessage::showWhyItIsEmpty(const std::string &path) {
    const QFontMetrics metrics(Type::font(Type::Size::body));
    const QString shown = metrics.elidedText(displayedText(path), Qt::ElideMiddle, widestPath);
    if (Folder::at(path, Folder::Links::follow).isOpen())
        setMessage(QStringLiteral("folder"), u"This folder is empty"_s,
                   u"“%1” contains no files or folders."_s.arg(shown));
    else if (fileStatus(path))
        setMessage(
            QStringLiteral("lock"), u"This could not be read"_s,
            u"“%1” is not a folder, or you don’t have permission to open it. %2"_s.arg(shown, whatHelps()));
    else
        setMessage(QStringLiteral("triangle-alert"), u"Nothing to scan"_s,
                   u"There is nothing at “%1”."_s.arg(shown));
}

QString ScanMessage::whatHelps() const {
    return volumes_->hasFullDiskAccess ? u"Its owner or an administrator can change that."_s
                                       : text(Words::current().measuringHelp);
}

} // namespace brimvale
