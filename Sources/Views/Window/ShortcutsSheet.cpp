#include "Views/Window/ShortcutsSheet.h"

#include "Views/Components/Shortcuts.h"
#include "Views/Components/TextLabel.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

struct Row {
    QList<QKeySequence> keys;
    QString effect;
};

QString text(const QList<QKeySequence> &keys) {
    return QKeySequence::listToString(keys, QKeySequence::NativeText)
        .replace(QLatin1String("; "), QLatin1String(", "));
}

} // namespace

ShortcutsSheet::ShortcutsSheet(QWidget *parent) : Sheet("shortcutsSheet", u"Keyboard Shortcuts"_s, parent) {
    const QList<Row> rows = {
        {{Shortcuts::page(1), Shortcuts::page(2), Shortcuts::page(3), Shortcuts::page(4)},
         u"Go to Overview, Browse, Cleanup or Apps"_s},
        {{Shortcuts::chooseFolder()}, u"Choose a folder to scan"_s},
        {Shortcuts::rescan(), u"Scan again, or look for apps again"_s},
        {{Qt::Key_Return}, u"Open the selected folder"_s},
        {Shortcuts::parentFolder(), u"Go to the parent folder"_s},
        {Shortcuts::back(), u"Go back to the previous folder"_s},
        {Shortcuts::forward(), u"Go forward"_s},
        {Shortcuts::rescanFolder(), u"Scan the selected folder again"_s},
        {{QKeySequence(QKeySequence::Find)}, u"Filter by name"_s},
        {{QKeySequence(QKeySequence::SelectAll)}, u"Select all rows in Browse"_s},
        {{Shortcuts::invertSelection()}, u"Invert the selection"_s},
        {{QKeySequence(QKeySequence::Copy)}, u"Copy the paths of the selection"_s},
        {{Qt::Key_Space}, u"Select or deselect the row"_s},
        {Shortcuts::removal(), u"Remove the selected items"_s},
        {{Qt::Key_Escape}, u"Close a dialog, or clear the filter"_s},
    };
    auto *title = new TextLabel(Type::Size::heading, QFont::DemiBold, this);
    title->setText(windowTitle());
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(8);
    for (const Row &row : rows) {
        auto *keys = new TextLabel(Type::Size::body, QFont::DemiBold, this);
        keys->setText(text(row.keys));
        auto *effect = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
        effect->setText(row.effect);
        const int line = grid->rowCount();
        grid->addWidget(keys, line, 0, Qt::AlignRight);
        grid->addWidget(effect, line, 1);
    }
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    QVBoxLayout *layout = makeLayout(16);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(title);
    layout->addLayout(grid);
    layout->addWidget(buttons);
}

} // namespace brimvale
