#include "support/FetchedResultObserver.h"

#include <algorithm>
#include <mutex>

#include "support/SimpleError.h"

namespace quillbox {

namespace {

void requireSortDescriptors(const platform::FetchRequest& request) {
    if (request.sortDescriptors.empty())
        throw ResultObserverError(
            ResultObserverError::Kind::fetchedResultsControllerRequiresSortDescriptors);
}

std::string sectionName(const platform::AttributeValue& value) {
    if (auto* text = std::get_if<std::string>(&value))
        return *text;
    if (auto* integer = std::get_if<std::int64_t>(&value))
        return std::to_string(*integer);
    if (auto* decimal = std::get_if<double>(&value))
        return std::to_string(*decimal);
    if (auto* flag = std::get_if<bool>(&value))
        return *flag ? "true" : "false";
    return "";
}

FetchedResultsSnapshot snapshotOf(const std::vector<platform::ManagedObjectPtr>& objects,
                                  const std::optional<std::string>& sectionKey) {
    FetchedResultsSnapshot snapshot;
    for (const auto& object : objects) {
        auto name = sectionKey ? sectionName(object->value(*sectionKey)) : "";
        if (snapshot.sections.empty() || snapshot.sections.back().name != name)
            snapshot.sections.push_back({std::move(name), {}});
        snapshot.sections.back().itemIdentifiers.push_back(object->objectID());
    }
    return snapshot;
}

bool showsAny(const FetchedResultsSnapshot& snapshot, const std::vector<platform::ObjectID>& ids) {
    for (const auto& section : snapshot.sections) {
        for (const auto& id : section.itemIdentifiers) {
            if (std::find(ids.begin(), ids.end(), id) != ids.end())
                return true;
        }
    }
    return false;
}

}  // namespace

ResultObserverError::ResultObserverError(Kind kind)
    : std::logic_error("fetchedResultsControllerRequiresSortDescriptors"), kind_(kind) {}

std::vector<platform::ObjectID> FetchedResultsSnapshot::itemIdentifiers() const {
    std::vector<platform::ObjectID> ids;
    for (const auto& section : sections)
        ids.insert(ids.end(), section.itemIdentifiers.begin(), section.itemIdentifiers.end());
    return ids;
}

// What the context's notifications reach: it lives as long as either the
// observer or a notification that is being handled.
class FetchedResultObserver::State {
  public:
    State(platform::FetchRequest request, platform::ManagedObjectContextPtr observed,
          std::optional<std::string> sectionKey)
        : context(std::move(observed)),
          sectionKey_(std::move(sectionKey)),
          request_(std::move(request)) {
        auto [stream, continuation] = ResultStream::makeStream();
        stream_.emplace(std::move(stream));
        continuation_.emplace(std::move(continuation));
    }

    // Fetches and publishes when the snapshot differs, or when `updated`
    // names an object it shows (its values changed in place). Both happen
    // inside the context's lock, so snapshots go out in the order of the
    // context's changes.
    void refetch(bool always, const std::vector<platform::ObjectID>& updated = {}) {
        context->performAndWait([&] {
            auto snapshot = snapshotOf(context->fetch(request()), sectionKey_);
            {
                std::lock_guard guard(mutex_);
                if (!always && latest_ == snapshot && !showsAny(snapshot, updated))
                    return;
                latest_ = snapshot;
            }
            publish(snapshot);
        });
    }

    void publish(const FetchedResultsSnapshot& snapshot) {
        publisher.emit(snapshot);
        try {
            continuation_->yield(snapshot);
        } catch (const CancellationError&) {
            // The consumer has gone; the other outlets still get snapshots.
        }
    }

    void follow(const std::shared_ptr<State>& self) {
        subscription_ = context->observeObjectsDidChange(
            [weak = std::weak_ptr<State>(self)](const platform::ObjectsDidChange& change) {
                auto state = weak.lock();
                if (state && change.touches(state->request().entityName))
                    state->refetch(false, change.updated);
            });
    }

    platform::FetchRequest request() const {
        std::lock_guard guard(mutex_);
        return request_;
    }
    void setRequest(platform::FetchRequest request) {
        std::lock_guard guard(mutex_);
        request_ = std::move(request);
    }
    std::optional<FetchedResultsSnapshot> latest() const {
        std::lock_guard guard(mutex_);
        return latest_;
    }
    ResultStream stream() const { return *stream_; }
    void finish() { continuation_->finish(); }

    const platform::ManagedObjectContextPtr context;
    Signal<FetchedResultsSnapshot> publisher;

  private:
    const std::optional<std::string> sectionKey_;
    mutable std::mutex mutex_;
    platform::FetchRequest request_;
    std::optional<FetchedResultsSnapshot> latest_;
    std::optional<ResultStream> stream_;
    std::optional<ResultStream::Continuation> continuation_;
    platform::Subscription subscription_;
};

FetchedResultObserver::FetchedResultObserver(platform::FetchRequest fetchRequest,
                                             platform::ManagedObjectContextPtr managedObjectContext,
                                             std::optional<std::string> sectionNameKeyPath,
                                             std::optional<std::string> cacheName,
                                             bool finishStreamOnDeallocate)
    : initialFetchRequest_(fetchRequest),
      cacheName_(std::move(cacheName)),
      finishStreamOnDeallocate_(finishStreamOnDeallocate) {
    requireSortDescriptors(fetchRequest);
    state_ = std::make_shared<State>(std::move(fetchRequest), std::move(managedObjectContext),
                                     std::move(sectionNameKeyPath));
}

FetchedResultObserver::~FetchedResultObserver() {
    if (finishStreamOnDeallocate_)
        state_->finish();
}

void FetchedResultObserver::start() {
    state_->refetch(true);
    state_->follow(state_);
}

void FetchedResultObserver::updateFetchRequest(platform::FetchRequest fetchRequest) {
    requireSortDescriptors(fetchRequest);
    state_->setRequest(std::move(fetchRequest));
    state_->refetch(true);
}

void FetchedResultObserver::resetFetchRequest() {
    updateFetchRequest(initialFetchRequest_);
}

platform::FetchRequest FetchedResultObserver::fetchRequest() const {
    return state_->request();
}

std::optional<FetchedResultsSnapshot> FetchedResultObserver::latestSnapshot() const {
    return state_->latest();
}

Signal<FetchedResultsSnapshot>& FetchedResultObserver::updatePublisher() {
    return state_->publisher;
}

FetchedResultObserver::ResultStream FetchedResultObserver::resultStream() const {
    return state_->stream();
}

platform::ManagedObjectPtr FetchedResultObserver::object(
    const platform::ObjectID& id, platform::ManagedObjectContext& context) const {
    if (auto found = maybeObject(id, context))
        return found;
    throw SimpleError("Object either doesn't exist or isn't of " + state_->request().entityName +
                      " type.");
}

platform::ManagedObjectPtr FetchedResultObserver::maybeObject(
    const platform::ObjectID& id, platform::ManagedObjectContext& context) const {
    if (id.entityName != state_->request().entityName)
        return nullptr;
    try {
        return context.existingObject(id);
    } catch (const platform::ObjectStoreError&) {
        return nullptr;
    }
}

}  // namespace quillbox
