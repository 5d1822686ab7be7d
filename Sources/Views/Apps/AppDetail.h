#pragma once

#include "Core/Apps/AppRow.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"
#include "Views/Apps/AppIcons.h"
#include "Views/Entries/TickedEntries.h"

#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

class QCheckBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace brimvale {

class ElidedLabel;
class IconLabel;
class LeftoverGroup;
class TextLabel;

/// One application and its leftovers, which can be selected.
class AppDetail : public QWidget {
    Q_OBJECT

public:
    explicit AppDetail(QWidget *parent = nullptr);

    /// Shows one of `rows`. The selection is kept if it is the same application as before. `isLoading` tells
    /// that what is not analysed will be.
    void show(const AppRow &row, const std::vector<AppRow> &rows, bool isLoading);

    /// The selected leftovers, in the order of the page.
    [[nodiscard]] std::vector<LeftoverItem> leftovers() const;
    /// Whether the application itself should be removed.
    [[nodiscard]] bool includesBundle() const;
    void clearTicks();

signals:
    void selectionChanged();
    /// The user tried to select what can never be removed.
    void refused(const QString &reason);
    void browseAsked(const FileURL &folder);
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);

private:
    QWidget *makeHead();
    QWidget *makeBundleChoice();
    QWidget *makeCommand();
    void showBundleChoice();
    void tickParts(bool tick);
    void showCommand();
    void openSoftwareLink();
    void showPicture();
    void showFacts();
    void showLeftovers(const std::vector<AppRow> &rows, bool isLoading);

    std::optional<AppRow> row_;
    TickedEntries ticked_;
    AppIcons icons_;
    IconLabel *symbol_;
    QLabel *picture_; ///< the app's own icon, in place of the symbol
    TextLabel *name_;
    ElidedLabel *identity_;
    ElidedLabel *path_;
    TextLabel *facts_;
    QCheckBox *bundle_;
    TextLabel *systemApp_;
    QPushButton *uninstaller_ = nullptr;
    /// With a command that removes the app, a button to copy it, and one for the program for software.
    QWidget *command_ = nullptr;
    ElidedLabel *commandWords_ = nullptr;
    QPushButton *copy_ = nullptr;
    QPushButton *openLink_ = nullptr;
    TextLabel *state_;
    LeftoverGroup *exact_;
    LeftoverGroup *likely_;
};

} // namespace brimvale
