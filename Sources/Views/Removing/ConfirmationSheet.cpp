#include "Views/Removing/ConfirmationSheet.h"

#include "Views/Components/DestructiveButton.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int margin = 24;
constexpr int sheetWidth = 420;

/// What both sheets consist of; answers the row for the buttons.
QHBoxLayout *fill(QDialog &sheet, const QString &heading, const QString &words) {
    sheet.setAttribute(Qt::WA_DeleteOnClose);
    sheet.setAttribute(Qt::WA_WindowPropagation); // so that it has the window's palette
    sheet.setWindowModality(Qt::WindowModal);
    sheet.setWindowTitle(heading);
    auto *title = new TextLabel(Type::Size::heading, QFont::DemiBold, &sheet);
    title->setObjectName(QStringLiteral("question"));
    title->setText(heading);
    title->setWordWrap(true);
    auto *text = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, &sheet);
    text->setObjectName(QStringLiteral("explanation"));
    text->setText(words);
    text->setWordWrap(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto *layout = new QVBoxLayout(&sheet);
    layout->setContentsMargins(margin, margin, margin, 16);
    layout->setSpacing(12);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addSpacing(4);
    layout->addLayout(buttons);
    sheet.setFixedWidth(sheetWidth);
    return buttons;
}

} // namespace

ConfirmationSheet::ConfirmationSheet(const QString &question, const QString &explanation,
                                     const QString &action, QWidget *parent)
    : QDialog(parent, Qt::Sheet) {
    setObjectName(QStringLiteral("confirmationSheet"));
    QHBoxLayout *buttons = fill(*this, question, explanation);
    auto *act = new DestructiveButton(this);
    act->setObjectName(QStringLiteral("confirm"));
    act->setText(action);
    connect(act, &QPushButton::clicked, this, &QDialog::accept);
    auto *cancel = new QPushButton(u"Cancel"_s, this);
    cancel->setObjectName(QStringLiteral("cancel"));
    cancel->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    buttons->addWidget(act);
    buttons->addWidget(cancel);
    cancel->setFocus();
}

NoticeSheet::NoticeSheet(const QString &title, const QString &text, QWidget *parent)
    : QDialog(parent, Qt::Sheet) {
    setObjectName(QStringLiteral("noticeSheet"));
    auto *close = new QPushButton(u"OK"_s, this);
    close->setObjectName(QStringLiteral("ok"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    fill(*this, title, text)->addWidget(close);
}

} // namespace brimvale
