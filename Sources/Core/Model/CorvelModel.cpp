#include "Core/Model/CorvelModel.h"

#include "Core/Model/AdministratorScan.h"
#include "Core/Model/Apps.h"
#include "Core/Model/Backups.h"
#include "Core/Model/Basket.h"
#include "Core/Model/Cleanup.h"
#include "Core/Model/Duplicates.h"
#include "Core/Model/ModelSources.h"
#include "Core/Model/OrphanSearch.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Trash.h"
#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/RemovalActions.h"

namespace brimvale {

/// In the order in which they depend on each other.
struct CorvelModel::Parts {
    Parts(RemovalActions &removalActions, const ModelSources &sources)
        : actions(removalActions), volumes(workers, actions, sources.volumes),
          storage(workers, volumes, actions, sources.categories) {}

    RemovalActions &actions;
    Workers workers; // destroyed after the parts have cancelled their work
    Volumes volumes;
    ScanSession scan{workers, volumes};
    Removals removals{workers, actions, volumes, scan};
    Cleanup cleanup{workers};
    Storage storage;
    Apps apps{workers, removals};
    OrphanSearch orphans{workers, removals, apps};
    Backups backups{workers, removals};
    Trash trash{workers, removals, storage};
    Basket basket{workers};
    Duplicates duplicates{workers};
    AdministratorScan administratorScan{workers, actions, scan};
};

CorvelModel::CorvelModel() : CorvelModel(RemovalActions::platform()) {}

CorvelModel::CorvelModel(RemovalActions &actions) : CorvelModel(actions, ModelSources()) {}

CorvelModel::CorvelModel(RemovalActions &actions, const ModelSources &sources)
    : parts_(std::make_unique<Parts>(actions, sources)), volumes(parts_->volumes), scan(parts_->scan),
      removals(parts_->removals), cleanup(parts_->cleanup), storage(parts_->storage), apps(parts_->apps),
      orphans(parts_->orphans), backups(parts_->backups), trash(parts_->trash), basket(parts_->basket),
      duplicates(parts_->duplicates), administratorScan(parts_->administratorScan) {
    QObject::connect(&removals, &Removals::gone, &basket, &Basket::drop);
    QObject::connect(&removals, &Removals::partlyGone, &basket, &Basket::dropChanged);
    QObject::connect(&removals, &Removals::replaced, &basket, &Basket::dropChanged);
    QObject::connect(&trash, &Trash::gone, &basket, &Basket::drop);
    QObject::connect(&removals, &Removals::gone, &duplicates, &Duplicates::drop);
    QObject::connect(&trash, &Trash::gone, &duplicates, &Duplicates::drop);
    QObject::connect(&removals, &Removals::gone, &apps, &Apps::drop);
    QObject::connect(&removals, &Removals::gone, &orphans, &OrphanSearch::drop);
    QObject::connect(&removals, &Removals::gone, &cleanup, &Cleanup::drop);
    QObject::connect(&removals, &Removals::gone, &storage, &Storage::drop);
    QObject::connect(&removals, &Removals::gone, &scan, &ScanSession::drop);
    QObject::connect(&removals, &Removals::partlyGone, &apps, &Apps::measureAgain);
    QObject::connect(&removals, &Removals::partlyGone, &orphans, &OrphanSearch::measureAgain);
    QObject::connect(&removals, &Removals::partlyGone, &cleanup, &Cleanup::measureAgain);
    QObject::connect(&removals, &Removals::partlyGone, &storage, &Storage::measureAgain);
    QObject::connect(&removals, &Removals::partlyGone, &scan, &ScanSession::measureAgain);
    QObject::connect(&removals, &Removals::replaced, &apps, &Apps::measureAgain);
    QObject::connect(&removals, &Removals::replaced, &orphans, &OrphanSearch::measureAgain);
    QObject::connect(&removals, &Removals::replaced, &cleanup, &Cleanup::measureAgain);
    QObject::connect(&removals, &Removals::replaced, &storage, &Storage::measureAgain);
    QObject::connect(&removals, &Removals::replaced, &scan, &ScanSession::readPlacesAgain);
    QObject::connect(&volumes, &Volumes::wereRead, &storage, &Storage::resolveRemainder);
    QObject::connect(&removals, &Removals::movedToTrash, &cleanup, &Cleanup::listTrashAgain);
    QObject::connect(&removals, &Removals::movedToTrash, &cleanup, &Cleanup::measureAgain);
    QObject::connect(&removals, &Removals::movedToTrash, &storage, &Storage::listTrashAgain);
    QObject::connect(&removals, &Removals::movedToTrash, &storage, &Storage::measureAgain);
    QObject::connect(&removals, &Removals::movedToTrash, &scan, &ScanSession::readGrownAgain);
    QObject::connect(&trash, &Trash::gone, &cleanup, &Cleanup::drop);
    QObject::connect(&trash, &Trash::gone, &storage, &Storage::drop);
    QObject::connect(&trash, &Trash::gone, &scan, &ScanSession::drop);
    QObject::connect(&trash, &Trash::cameBack, &apps, &Apps::measureAgain);
    QObject::connect(&trash, &Trash::cameBack, &orphans, &OrphanSearch::searchAgain);
    QObject::connect(&trash, &Trash::cameBack, &cleanup, &Cleanup::measureAgain);
    QObject::connect(&trash, &Trash::cameBack, &storage, &Storage::readPlacesAgain);
    QObject::connect(&trash, &Trash::cameBack, &scan, &ScanSession::readPlacesAgain);
}

CorvelModel::~CorvelModel() = default;

} // namespace brimvale
