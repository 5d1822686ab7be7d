#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalMode.h"
#include "Views/Apps/AppIcons.h"
#include "Views/Apps/AppListModel.h"

#include <QTimer>
#include <QWidget>
#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListView;
class QScrollArea;

namespace brimvale {

class ActionBar;
class AppDetail;
class Apps;
class MeasureButton;
class OrphanDetail;
class OrphanEntry;
class OrphanSearch;
class Removals;
class StateMessage;
class TextLabel;

/// The page of the installed applications. Removes one of them with its leftovers, or the leftovers of those
/// that are gone, where these can be found.
class AppsView : public QWidget {
    Q_OBJECT

public:
    /// All must outlive the page.
    AppsView(Apps &apps, OrphanSearch &orphans, const Removals &removals, QWidget *parent = nullptr);

signals:
    /// The user wants to see what is inside a folder.
    void browseAsked(const FileURL &folder);
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *makeListSide();
    void makeListControls();
    void followListSide();
    void showMenu(const QPoint &place);
    void followOrphans();
    QScrollArea *makeDetailArea(QWidget *detail);
    QWidget *makeDetailSide();
    [[nodiscard]] const AppRow *chosen() const;
    void choose(const QModelIndex &row);
    void showApps();
    void showMatches();
    void showChosen();
    void showNoApp();
    void chooseOrphans();
    void showOrphans();
    [[nodiscard]] bool hasChosenOrphans() const;
    void showSelection();
    void checkRunning();
    void confirmRemoval(RemovalMode mode);
    void confirmUninstall(const AppRow &row, RemovalMode mode);
    void confirmOrphans(RemovalMode mode);

    Apps &apps_;
    OrphanSearch &orphans_;
    const Removals &removals_;
    AppListModel listModel_;
    AppIcons icons_;
    std::optional<FileURL> chosen_;
    QTimer runningTimer_;
    bool isCheckingRunning_ = false;
    MeasureButton *reload_;
    QLineEdit *search_;
    QComboBox *order_;
    QCheckBox *system_;
    QListView *list_;
    TextLabel *noMatch_;
    OrphanEntry *orphanEntry_; ///< hidden where orphans cannot be found
    StateMessage *message_;
    QScrollArea *detailArea_ = nullptr;
    AppDetail *detail_;
    QScrollArea *orphanArea_ = nullptr;
    OrphanDetail *orphanDetail_;
    ActionBar *bar_;
};

} // namespace brimvale
