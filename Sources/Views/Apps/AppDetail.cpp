#include "Views/Apps/AppDetail.h"

#include "Catalogs/Words.h"
#include "Core/Apps/Uninstall.h"
#include "Core/Text/Formatting.h"
#include "Views/Apps/LeftoverGroup.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/IconLabel.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Text.h"
#include "Views/Entries/ItemActions.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int pictureSize = 40;

LeftoverGroup::Heading headingOf(MatchConfidence confidence) {
    return {confidence == MatchConfidence::exact ? "exactLeftovers" : "likelyLeftovers",
            QString::fromUtf8(title(confidence)), text(explanation(confidence))};
}

} // namespace

AppDetail::AppDetail(QWidget *parent)
    : QWidget(parent),
      symbol_(new IconLabel(QStringLiteral("app-window"), IconLabel::Tone::accent, this, pictureSize)),
      picture_(new QLabel(this)), name_(new TextLabel(Type::Size::title, QFont::Bold, this)),
      identity_(new ElidedLabel(Type::Size::body, TextLabel::Tone::secondary, Qt::ElideMiddle, this)),
      path_(new ElidedLabel(Type::Size::caption, TextLabel::Tone::tertiary, Qt::ElideMiddle, this)),
      facts_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      bundle_(new QCheckBox(u"Remove the app itself"_s, this)),
      systemApp_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      state_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      exact_(new LeftoverGroup(headingOf(MatchConfidence::exact), ticked_, this)),
      likely_(new LeftoverGroup(headingOf(MatchConfidence::likely), ticked_, this)) {
    setObjectName(QStringLiteral("appDetail"));
    state_->setObjectName(QStringLiteral("leftoverState"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(makeHead());
    layout->addWidget(makeBundleChoice());
    layout->addWidget(makeCommand());
    layout->addWidget(state_);
    layout->addWidget(exact_);
    layout->addWidget(likely_);
    layout->addStretch(1);
    connect(&ticked_, &TickedEntries::changed, this, &AppDetail::showBundleChoice);
    connect(&ticked_, &TickedEntries::changed, this, &AppDetail::selectionChanged);
    connect(&ticked_, &TickedEntries::refused, this, &AppDetail::refused);
    for (const LeftoverGroup *group : {exact_, likely_}) {
        connect(group, &LeftoverGroup::browseAsked, this, &AppDetail::browseAsked);
        connect(group, &LeftoverGroup::basketAsked, this, &AppDetail::basketAsked);
    }
    connect(bundle_, &QCheckBox::toggled, this, &AppDetail::tickParts);
    connect(bundle_, &QCheckBox::toggled, this, &AppDetail::selectionChanged);
    connect(&icons_, &AppIcons::arrived, this, &AppDetail::showPicture);
}

QWidget *AppDetail::makeHead() {
    name_->setObjectName(QStringLiteral("appName"));
    name_->setWordWrap(true);
    name_->setHeading();
    identity_->setObjectName(QStringLiteral("appIdentity"));
    facts_->setObjectName(QStringLiteral("appFacts"));
    facts_->setWordWrap(true);
    auto *words = new QVBoxLayout;
    words->setSpacing(3);
    words->addWidget(name_);
    words->addWidget(identity_);
    words->addWidget(facts_);
    words->addWidget(path_);
    auto *head = new QWidget(this);
    auto *layout = new QHBoxLayout(head);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(14);
    picture_->setFixedSize(pictureSize, pictureSize);
    layout->addWidget(symbol_, 0, Qt::AlignTop);
    layout->addWidget(picture_, 0, Qt::AlignTop);
    layout->addLayout(words, 1);
    return head;
}

QWidget *AppDetail::makeBundleChoice() {
    bundle_->setObjectName(QStringLiteral("includeBundle"));
    systemApp_->setObjectName(QStringLiteral("systemApp"));
    QPushButton *reveal = makeButton("reveal", text(Words::current().revealItem), this);
    connect(reveal, &QPushButton::clicked, this, [this] {
        if (row_)
            ItemActions::reveal(row_->app.url, this);
    });
    uninstaller_ = makeButton("showUninstaller", u"Show Uninstaller"_s, this);
    connect(uninstaller_, &QPushButton::clicked, this, [this] {
        if (row_)
            ItemActions::reveal(FileURL(Uninstall::uninstallerOf(row_->app)), this);
    });
    systemApp_->setWordWrap(true);
    auto *choice = new QWidget(this);
    auto *layout = new QHBoxLayout(choice);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bundle_, 1);
    layout->addWidget(systemApp_, 1);
    layout->addWidget(uninstaller_);
    layout->addWidget(reveal);
    return choice;
}

QWidget *AppDetail::makeCommand() {
    command_ = new QWidget(this);
    commandWords_ = new ElidedLabel(Type::Size::body, TextLabel::Tone::primary, Qt::ElideMiddle, this);
    commandWords_->setObjectName(QStringLiteral("removalCommand"));
    copy_ = makeButton("copyCommand", u"Copy Command"_s, this);
    connect(copy_, &QPushButton::clicked, this, [this] {
        if (row_)
            QGuiApplication::clipboard()->setText(text(Uninstall::commandFor(row_->app)));
    });
    openLink_ = makeButton("openSoftwareCenter", u"Open in Software Center"_s, this);
    connect(openLink_, &QPushButton::clicked, this, &AppDetail::openSoftwareLink);
    auto *layout = new QHBoxLayout(command_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(commandWords_, 1);
    layout->addWidget(copy_);
    layout->addWidget(openLink_);
    return command_;
}

void AppDetail::showCommand() {
    const bool isForOthers = row_->app.isSystemApp || Uninstall::isRemovedHere(row_->app);
    const std::string words = isForOthers ? "" : Uninstall::commandFor(row_->app);
    const bool hasLink = !Uninstall::softwareLinkFor(row_->app).empty();
    commandWords_->setText(displayedText(words));
    copy_->setHidden(words.empty());
    openLink_->setVisible(hasLink);
    command_->setHidden(words.empty() && !hasLink);
}

void AppDetail::openSoftwareLink() {
    if (row_ && !QDesktopServices::openUrl(QUrl(text(Uninstall::softwareLinkFor(row_->app)))))
        emit refused(u"The software center could not be opened."_s);
}

void AppDetail::showPicture() {
    const QPixmap own =
        row_ ? icons_.picture(row_->app.iconPath, pictureSize, devicePixelRatioF()) : QPixmap();
    picture_->setPixmap(own);
    picture_->setHidden(own.isNull());
    symbol_->setHidden(!own.isNull());
}

void AppDetail::show(const AppRow &row, const std::vector<AppRow> &rows, bool isLoading) {
    const bool isAnother = !row_ || row_->app.url != row.app.url;
    row_ = row;
    if (isAnother)
        clearTicks();
    showBundleChoice();
    showCommand();
    showPicture();
    showFacts();
    showLeftovers(rows, isLoading);
}

/// Shows the tick box for the application, or why it is never removed.
void AppDetail::showBundleChoice() {
    if (!row_)
        return;
    const QString reason = Uninstall::isRemovedAsItem(row_->app) ? ticked_.lockReason(row_->app.url)
                           : Uninstall::isRemovedByCommand(row_->app)
                               ? QString()
                               : text(Uninstall::otherRemoval(row_->app));
    // The user must see how much a removal frees before asking for it.
    const bool canTick = row_->analyzed && reason.isEmpty();
    if (!canTick)
        bundle_->setChecked(false);
    bundle_->setEnabled(canTick);
    bundle_->setHidden(!reason.isEmpty());
    // The box is on one line with those in the cards, the reason with the other words.
    bundle_->parentWidget()->layout()->setContentsMargins(reason.isEmpty() ? Metrics::tickBoxLine : 0, 0, 0,
                                                          0);
    systemApp_->setText(reason);
    systemApp_->setHidden(reason.isEmpty());
}

/// The desktop entry and the icons of an application are selected with it.
void AppDetail::tickParts(bool tick) {
    std::vector<CleanupEntry> parts;
    if (row_)
        for (const LeftoverItem &item : row_->leftovers)
            if (item.goesWithApp)
                parts.push_back(Uninstall::entryOf(item));
    if (!parts.empty())
        ticked_.setTicked(parts, tick);
}

void AppDetail::clearTicks() {
    ticked_.clear();
    bundle_->setChecked(false);
}

void AppDetail::showFacts() {
    const InstalledApp &app = row_->app;
    name_->setText(displayedText(app.name));
    QStringList identity;
    if (app.kind != AppKind::bundle)
        identity.append(QString::fromUtf8(title(app.kind)));
    if (app.version)
        identity.append(u"Version %1"_s.arg(displayedText(*app.version)));
    if (app.bundleID)
        identity.append(displayedText(*app.bundleID));
    if (app.isMASApp)
        identity.append(u"from the App Store"_s);
    if (app.kind == AppKind::flatpak && !app.origin.empty())
        identity.append(u"from %1"_s.arg(displayedText(app.origin)));
    identity_->setText(identity.join(QStringLiteral(" · ")));
    identity_->setHidden(identity.isEmpty());
    QStringList facts = {!row_->analyzed ? u"Not analyzed yet"_s
                         : app.hasSize() ? sizeText(row_->bundleSize)
                                         : u"Size unknown"_s};
    if (app.lastUsed)
        facts.append((app.kind == AppKind::bundle ? u"last used %1"_s : u"opened about %1"_s)
                         .arg(text(Fmt::relativeDate(app.lastUsed))));
    const std::string uninstaller = Uninstall::uninstallerOf(app);
    if (!uninstaller.empty())
        facts.append(
            u"has its own uninstaller, which you should use instead: %1"_s.arg(displayedText(uninstaller)));
    uninstaller_->setHidden(uninstaller.empty());
    facts_->setText(facts.join(QStringLiteral(" · ")));
    path_->setText(displayedText(app.url.path()));
}

void AppDetail::showLeftovers(const std::vector<AppRow> &rows, bool isLoading) {
    std::vector<LeftoverListModel::Row> exact, likely;
    std::vector<CleanupEntry> all = {{.url = row_->app.url}};
    for (const LeftoverItem &item : row_->leftovers) {
        std::vector<LeftoverListModel::Row> &group =
            item.confidence == MatchConfidence::exact ? exact : likely;
        group.push_back({item, displayedText(Uninstall::otherClaims(item, row_->app.url, rows)), {}});
        all.push_back(Uninstall::entryOf(item));
    }
    ticked_.retain({&all});
    exact_->setRows(exact);
    likely_->setRows(likely);
    state_->setHidden(!row_->leftovers.empty());
    state_->setText(row_->analyzed ? text(Words::current().noOtherFiles)
                    : isLoading
                        ? text(Words::current().stillSearching)
                        : u"Stopped before this app was analyzed. Reload to look at all apps again."_s);
}

std::vector<LeftoverItem> AppDetail::leftovers() const {
    std::vector<LeftoverItem> ticked;
    if (row_)
        for (const LeftoverItem &item : row_->leftovers)
            if (ticked_.contains(item.url))
                ticked.push_back(item);
    return ticked;
}

bool AppDetail::includesBundle() const {
    return row_ && Uninstall::isRemovedHere(row_->app) && bundle_->isChecked();
}

} // namespace brimvale
