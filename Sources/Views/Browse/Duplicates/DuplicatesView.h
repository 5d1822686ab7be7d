#pragma once

#include "Base/FileURL.h"
#include "Views/Browse/Duplicates/DuplicatesModel.h"

#include <QWidget>
#include <optional>

class QComboBox;
class QListView;
class QPushButton;
class QStackedLayout;

namespace brimvale {

class DestructiveButton;
class ProgressNote;
class Removals;
class StateMessage;
class TextLabel;

/// The files with equal contents in a folder: searches them, lets the user tick those that go, and removes
/// them or lets them share their space after a question.
class DuplicatesView : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive it.
    DuplicatesView(Duplicates &duplicates, Removals &removals, QWidget *parent = nullptr);
    ~DuplicatesView() override;

    /// The folder that the next search is for; nothing where there is none on this disk.
    void setFolder(const std::optional<FileURL> &folder);

    /// Asks about the removal of the ticked files.
    void askForRemoval();

signals:
    /// The user wants to see this file in its folder.
    void shownInFolder(const FileURL &file);

private:
    QWidget *makeHead();
    QWidget *makeList();
    QWidget *makeBar();
    void search();
    void askForSharing();
    void showState();
    void showMessage();
    void showTicks();
    void showCurrent();
    void letCurrentStay();
    void showMenu(const QPoint &place);
    void sayShared(const SpaceSharing &done);

    Duplicates &duplicates_;
    Removals &removals_;
    std::optional<FileURL> folder_;
    DuplicatesModel model_;
    QComboBox *leastLength_;
    QPushButton *search_;
    ProgressNote *progress_;
    TextLabel *summary_;
    TextLabel *rule_;
    StateMessage *message_;
    QListView *list_;
    QWidget *bar_;
    TextLabel *refusal_;
    QPushButton *tickAll_;
    QPushButton *letStay_;
    QPushButton *share_;
    DestructiveButton *remove_;
    QStackedLayout *body_;
};

} // namespace brimvale
