#pragma once

#include "Core/Removal/RemovalMode.h"
#include "Views/Apps/AppIcons.h"
#include "Views/Apps/AppListModel.h"

#include <QTimer>
#include <QWidget>
#include <optional>

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
class Removals;
class StateMessage;
class TextLabel;

/// The page of the installed applications. Removes one of them with its leftovers.
class AppsView : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive the page.
    AppsView(Apps &apps, const Removals &removals, QWidget *parent = nullptr);

signals:
    /// The user wants to see what is inside a folder.
    void browseAsked(const FileURL &folder);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *makeListSide();
    void makeListControls();
    void followListSide();
    QWidget *makeDetailSide();
    [[nodiscard]] const AppRow *chosen() const;
    void choose(const QModelIndex &row);
    void showApps();
    void showMatches();
    void showChosen();
    void showSelection();
    void checkRunning();
    void confirmUninstall(RemovalMode mode);

    Apps &apps_;
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
    StateMessage *message_;
    QScrollArea *detailArea_ = nullptr;
    AppDetail *detail_;
    ActionBar *bar_;
};

} // namespace brimvale
