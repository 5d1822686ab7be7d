#include "Views/Components/Sheet.h"

#include "Views/Components/Metrics.h"
#include "Views/Components/Popup.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <iterator>

namespace brimvale {

Sheet::Sheet(const char *objectName, const QString &title, QWidget *parent) : QDialog(parent, Qt::Sheet) {
    setObjectName(QLatin1String(objectName));
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    usePaletteOfParent(*this);
}

QVBoxLayout *Sheet::makeLayout(int gap) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::sheetMargin, Metrics::sheetMargin, Metrics::sheetMargin,
                               Metrics::sheetFoot);
    layout->setSpacing(gap);
    return layout;
}

TextLabel *Sheet::makeHeading(const char *objectName, const QString &words) {
    auto *heading = new TextLabel(Type::Size::heading, QFont::DemiBold, this);
    heading->setObjectName(QLatin1String(objectName));
    heading->setText(words);
    heading->setWordWrap(true);
    return heading;
}

QPushButton *Sheet::makeCloseButton(const char *objectName, const QString &title) {
    auto *button = new QPushButton(title, this);
    button->setObjectName(QLatin1String(objectName));
    button->setDefault(true);
    connect(button, &QPushButton::clicked, this, &QDialog::reject);
    return button;
}

void Sheet::addButtons(QVBoxLayout &layout, std::initializer_list<QPushButton *> buttons) {
    auto *row = new QWidget(this);
    auto *inRow = new QHBoxLayout(row); // with the usual gap between buttons, not that of the sheet
    inRow->setContentsMargins(0, 0, 0, 0);
    inRow->addStretch(1);
    for (QPushButton *button : buttons)
        inRow->addWidget(button);
    layout.addWidget(row);
    (*std::prev(buttons.end()))->setFocus();
}

} // namespace brimvale
