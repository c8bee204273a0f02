#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/ObjectStore.h"
#include "support/AsyncCancellableThrowingStream.h"
#include "support/Signal.h"

namespace quillbox {

// The identifiers of a fetch's results in their order, in sections of equal
// section-key values (one unnamed section without a section key).
struct FetchedResultsSnapshot {
    struct Section {
        std::string name;
        std::vector<platform::ObjectID> itemIdentifiers;
        friend bool operator==(const Section&, const Section&) = default;
    };
    std::vector<Section> sections;

    std::vector<platform::ObjectID> itemIdentifiers() const;
    friend bool operator==(const FetchedResultsSnapshot&, const FetchedResultsSnapshot&) = default;
};

class ResultObserverError : public std::logic_error {
  public:
    enum class Kind { fetchedResultsControllerRequiresSortDescriptors };
    explicit ResultObserverError(Kind kind);
    Kind kind() const { return kind_; }

  private:
    Kind kind_;
};

// Watches a sorted fetch in a context and gives a new snapshot of its results
// after each change of the context that touches them: a save of the context,
// or another context's save merged into it (so, for the saves of other
// contexts, give it a context that merges changes automatically). Each
// snapshot goes to updatePublisher(), latestSnapshot() and resultStream(),
// on the thread that saved.
class FetchedResultObserver {
  public:
    using ResultStream = AsyncCancellableThrowingStream<FetchedResultsSnapshot>;

    // Throws ResultObserverError for a request without sort descriptors.
    // Section names are the texts of the sectionNameKeyPath attribute; the
    // request should sort by it first. The cache name is kept and not used.
    FetchedResultObserver(platform::FetchRequest fetchRequest,
                          platform::ManagedObjectContextPtr managedObjectContext,
                          std::optional<std::string> sectionNameKeyPath = std::nullopt,
                          std::optional<std::string> cacheName = std::nullopt,
                          bool finishStreamOnDeallocate = true);
    ~FetchedResultObserver();
    FetchedResultObserver(const FetchedResultObserver&) = delete;
    FetchedResultObserver& operator=(const FetchedResultObserver&) = delete;

    // Performs the fetch and publishes its first snapshot; then follows the
    // context. What the fetch throws passes on.
    void start();
    // Replaces the request and fetches again; throws ResultObserverError for
    // one without sort descriptors.
    void updateFetchRequest(platform::FetchRequest fetchRequest);
    void resetFetchRequest();

    platform::FetchRequest fetchRequest() const;
    const platform::FetchRequest& initialFetchRequest() const { return initialFetchRequest_; }
    const std::optional<std::string>& cacheName() const { return cacheName_; }

    std::optional<FetchedResultsSnapshot> latestSnapshot() const;
    Signal<FetchedResultsSnapshot>& updatePublisher();
    ResultStream resultStream() const;

    // The object of a snapshot's identifier in the context. object() raises
    // SimpleError "Object either doesn't exist or isn't of <entity> type."
    // where maybeObject() answers null.
    platform::ManagedObjectPtr object(const platform::ObjectID& id,
                                      platform::ManagedObjectContext& context) const;
    platform::ManagedObjectPtr maybeObject(const platform::ObjectID& id,
                                           platform::ManagedObjectContext& context) const;

  private:
    class State;

    const platform::FetchRequest initialFetchRequest_;
    const std::optional<std::string> cacheName_;
    const bool finishStreamOnDeallocate_;
    std::shared_ptr<State> state_;
};

}  // namespace quillbox
