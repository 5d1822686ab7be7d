#include "Views/Browse/ScanMessage.h"

#include "Core/Model/CorvelModel.h"
#include "Platform/Folder.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Theme.h"

#include <QFontMetrics>

namespace brimvale {

namespace {

constexpr int widestPath = 400;

} // namespace

ScanMessage::ScanMessage(const CorvelModel &model, QWidget *parent) : StateMessage(parent), model_(model) {}

void ScanMessage::showState() {
    if (*model_.isScanning)
        setMessage(QStringLiteral("search"), tr("Scanning…"),
                   tr("The outline and the treemap appear when the scan is done. You can stop it at any "
                      "time; nothing on the disk is changed."));
    else if (*model_.tree == nullptr)
        setMessage(QStringLiteral("folder-tree"), tr("See what takes the space"),
                   tr("Press Scan to measure the place chosen above, or choose another folder. A scan only "
                      "looks; it changes nothing."));
    else
        showWhyItIsEmpty((*model_.tree)->path()); // another place may have been chosen since the scan began
}

void ScanMessage::showWhyItIsEmpty(const std::string &path) {
    const QFontMetrics metrics(Type::font(Type::Size::body));
    const QString shown = metrics.elidedText(displayedText(path), Qt::ElideMiddle, widestPath);
    if (Folder::at(path, Folder::Links::follow).isOpen())
        setMessage(QStringLiteral("folder"), tr("Nothing in here"),
                   tr("“%1” is an empty folder.").arg(shown));
    else if (fileStatus(path))
        setMessage(QStringLiteral("lock"), tr("This could not be read"),
                   tr("“%1” is not a folder that you may list. %2").arg(shown, whatHelps()));
    else
        setMessage(QStringLiteral("triangle-alert"), tr("Nothing to scan"),
                   tr("There is nothing at “%1”.").arg(shown));
}

QString ScanMessage::whatHelps() const {
    return *model_.hasFullDiskAccess ? tr("Its owner or an administrator can change that.")
                                     : tr("Full Disk Access would let this be measured.");
}

} // namespace brimvale
