#include "Views/Removing/RemovalModePicker.h"

#include "Views/Components/Popup.h"

#include <QAbstractItemView>

using namespace Qt::StringLiterals;

namespace brimvale {

RemovalModePicker::RemovalModePicker(QWidget *parent) : QComboBox(parent) {
    setObjectName(QStringLiteral("modePicker"));
    setAccessibleName(u"How to remove"_s);
    for (const RemovalMode mode : allRemovalModes)
        addItem(QString::fromUtf8(title(mode).data(), static_cast<qsizetype>(title(mode).size())));
    usePaletteOfParent(*view()->window());
    connect(this, &QComboBox::currentIndexChanged, this, [this] { emit modeChanged(mode()); });
}

void RemovalModePicker::setMode(RemovalMode mode) {
    for (std::size_t i = 0; i < allRemovalModes.size(); ++i)
        if (allRemovalModes[i] == mode)
            setCurrentIndex(static_cast<int>(i));
}

RemovalMode RemovalModePicker::mode() const {
    return allRemovalModes[static_cast<std::size_t>(currentIndex())];
}

} // namespace brimvale
