#include "Views/Category/BackupReviewView.h"

#include "Catalogs/Words.h"
#include "Core/Backup/Archiver.h"
#include "Platform/FileBrowser.h"
#include "Views/Components/Card.h"
#include "Views/Components/DestructiveButton.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/NoteLabel.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"
#include "Views/Entries/ItemActions.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int sheetWidth = 540;

/// "2 items did not copy at full size. Check those before deleting anything."
QString mismatchWarning(std::int64_t count) {
    return u"%1 did not copy at full size. Check those before deleting anything."_s.arg(
        counted(count, "item"));
}

} // namespace

BackupReviewView::BackupReviewView(const PendingDeletion &pending, QWidget *parent)
    : Sheet("backupReview", u"Backup complete"_s, parent), pending_(pending) {
    QVBoxLayout *layout = makeLayout(14);
    addHeading(*layout);
    addFolder(*layout);
    addTranscript(*layout);
    addWarnings(*layout);
    auto *mode = new TextLabel(Type::Size::body, QFont::Medium, this);
    mode->setObjectName(QStringLiteral("modeLine"));
    mode->setWordWrap(true);
    mode->setText(pending_.mode == RemovalMode::trash
                      ? u"Originals will go to the Trash."_s
                      : u"Originals will be deleted immediately, with no Trash to fall back on."_s);
    layout->addWidget(mode);
    layout->addSpacing(2);
    addChoice(*layout);
    setFixedWidth(Type::scaled(sheetWidth));
}

void BackupReviewView::addHeading(QVBoxLayout &layout) {
    auto *summary = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
    summary->setObjectName(QStringLiteral("reviewSummary"));
    const auto count = static_cast<std::int64_t>(pending_.items.size());
    summary->setText(u"%1 copied, %2"_s.arg(counted(count, "item"), sizeText(pending_.bytes)));
    auto *words = new QVBoxLayout;
    words->setSpacing(3);
    words->addWidget(makeHeading("reviewHeading", u"Backup complete. Nothing has been deleted yet."_s));
    words->addWidget(summary);
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(new IconLabel(QStringLiteral("circle-check-filled"), IconLabel::Tone::good, this, 28), 0,
                   Qt::AlignTop);
    row->addLayout(words, 1);
    layout.addLayout(row);
}

void BackupReviewView::addFolder(QVBoxLayout &layout) {
    auto *card = new Card(this);
    auto *title = new TextLabel(Type::Size::body, QFont::Medium, card);
    title->setText(text(Words::current().showBackupCopy));
    auto *advice = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, card);
    advice->setText(u"Open the folder and check it first."_s);
    auto *path = new ElidedLabel(Type::Size::caption, TextLabel::Tone::tertiary, Qt::ElideMiddle, card);
    path->setObjectName(QStringLiteral("backupFolder"));
    path->setText(displayedText(pending_.destination.path()));
    QPushButton *open = makeButton("openFolder", text(Words::current().openFolder), card);
    connect(open, &QPushButton::clicked, this, [this] { ItemActions::reveal(pending_.destination, this); });
    auto *words = new QVBoxLayout;
    words->setSpacing(2);
    words->addWidget(title);
    words->addWidget(advice);
    words->addWidget(path);
    auto *row = new QHBoxLayout(card);
    row->setContentsMargins(14, 10, 14, 10);
    row->addLayout(words, 1);
    row->addWidget(open);
    layout.addWidget(card);
}

void BackupReviewView::addTranscript(QVBoxLayout &layout) {
    if (!pending_.readableExport)
        return;
    auto *note = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
    note->setObjectName(QStringLiteral("transcriptNote"));
    note->setText(u"A readable transcript was written alongside the database."_s);
    note->setWordWrap(true);
    QPushButton *open = makeButton("openTranscript", u"Open Messages Archive"_s, this);
    connect(open, &QPushButton::clicked, this, [page = *pending_.readableExport] {
        QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(FileBrowser::fileURI(page))));
    });
    auto *row = new QHBoxLayout;
    row->addWidget(note, 1);
    row->addWidget(open);
    layout.addLayout(row);
}

void BackupReviewView::addWarnings(QVBoxLayout &layout) {
    const auto warn = [&](const char *objectName, const char *icon, const QString &words) {
        auto *note = new NoteLabel(QLatin1String(icon), IconLabel::Tone::warning, this);
        note->setObjectName(QLatin1String(objectName));
        note->setText(words);
        layout.addWidget(note);
    };
    const auto mismatched =
        std::count_if(pending_.items.begin(), pending_.items.end(), Archiver::isMismatched);
    if (mismatched > 0)
        warn("mismatchWarning", "triangle-alert", mismatchWarning(mismatched));
    for (const std::string &remark : pending_.remarks)
        warn("remark", "triangle-alert", displayedText(remark));
    if (pending_.sameVolumeAsSource)
        warn("sameVolumeWarning", "hard-drive",
             u"This backup is on the same disk as the originals, so deleting them will not free space "
             "until you move this folder off the disk or delete it too."_s);
}

void BackupReviewView::addChoice(QVBoxLayout &layout) {
    auto *remove = new DestructiveButton(this);
    remove->setObjectName(QStringLiteral("deleteOriginals"));
    remove->setText(u"Delete Originals"_s);
    connect(remove, &QPushButton::clicked, this, &QDialog::accept);
    addButtons(layout, {remove, makeCloseButton("keepBoth", u"Keep Both"_s)});
}

} // namespace brimvale
