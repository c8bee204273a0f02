#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/ObjectStore.h"
#include "support/CoreDataStackConfiguration.h"
#include "support/MutexLock.h"
#include "support/SourceLocation.h"

namespace quillbox {

// The name under which a long-lived context is kept.
struct ContextKey {
    std::string rawValue;

    static const ContextKey global;  // "coredatastack.contextkey.global"
    static const ContextKey main;    // "coredatastack.contextkey.main"

    friend auto operator<=>(const ContextKey&, const ContextKey&) = default;
    friend bool operator==(const ContextKey&, const ContextKey&) = default;
};

// A persistent container of the platform's object store (the process-wide
// platform::objectStore()), set up lazily from its configuration, with named
// long-lived contexts and a safe way to save.
//
// One process-wide lock guards the configuration, the container and the
// named contexts of every stack; a custom store loader runs under it and
// must not call back into a stack.
class CoreDataStack {
  public:
    using Configuration = CoreDataStackConfiguration;

    class Error : public std::runtime_error {
      public:
        enum class Kind {
            noCoreDataModel,
            noContextRegistered,
            cantFindObjectModel,
            containerAlreadyConfigured,
            coreDataStackNeverConfigured,
        };
        static Error noCoreDataModel(const std::string& atPath);
        static Error noContextRegistered(const ContextKey& forKey);
        static Error cantFindObjectModel(const std::filesystem::path& at);
        static Error containerAlreadyConfigured();
        static Error coreDataStackNeverConfigured();

        Kind kind() const { return kind_; }
        // The path, location or key the error is about; empty for the others.
        const std::string& subject() const { return subject_; }

      private:
        Error(Kind kind, std::string subject, const std::string& text);
        Kind kind_;
        std::string subject_;
    };

    static constexpr const char* didResetRegisteredTypeNotification =
        "quillbox.didResetRegisteredTypeNotification";
    static constexpr const char* didResetRegisteredTypesNotification =
        "quillbox.didResetRegisteredTypesNotification";

    explicit CoreDataStack(Configuration configuration, bool configureContainerImmediately = false);
    static std::unique_ptr<CoreDataStack> withModelFileName(
        const std::string& modelFileName, bool configureContainerImmediately = false);
    static std::unique_ptr<CoreDataStack> withModelURL(const std::filesystem::path& modelURL,
                                                       bool configureContainerImmediately = false);
    CoreDataStack(const CoreDataStack&) = delete;
    CoreDataStack& operator=(const CoreDataStack&) = delete;

    Configuration configuration() const;
    // Ignored, with a warning line, once the container is configured.
    void setConfiguration(Configuration configuration);

    // Null until configured.
    platform::PersistentContainerPtr container() const;
    // Configures first when needed.
    platform::PersistentContainerPtr configuredContainer();
    platform::ManagedObjectContextPtr mainContext();

    // Throws containerAlreadyConfigured the second time; cantFindObjectModel
    // for a model that can't be loaded; what a store raises when it can't be
    // opened. The default store failing to load stops the process.
    void configureContainer();

    platform::ManagedObjectContextPtr newBackgroundContext();

    // The context under the key: the one registered before if there is one,
    // else the given one, else a new background context.
    platform::ManagedObjectContextPtr registerConsistentContext(
        platform::ManagedObjectContextPtr context, const ContextKey& key);
    // Throws coreDataStackNeverConfigured, and a SimpleError for the main key.
    void deregisterConsistentContext(const ContextKey& key);
    // Throws coreDataStackNeverConfigured and noContextRegistered.
    platform::ManagedObjectContextPtr context(const ContextKey& key) const;

    // Entity names whose objects resetRegisteredTypesInContainer() deletes.
    void registerModel(const std::string& entityName);
    std::vector<std::string> registeredModels() const;

    // Saves inside the context's performAndWait, with the override as its
    // merge policy meanwhile; the context's own policy is put back after, and
    // an error of the save is raised after that.
    void save(const platform::ManagedObjectContextPtr& context,
              std::optional<platform::MergePolicyType> mergePolicyOverride = std::nullopt);

    // Deletes every object of the entity through a new background context,
    // then posts didResetRegisteredTypeNotification with the entity name.
    void resetRegisteredTypeInContainer(const std::string& entityName);
    // The same for each registered type in order, then posts
    // didResetRegisteredTypesNotification with the stack.
    void resetRegisteredTypesInContainer();

  private:
    void configureContainerLocked();
    platform::ManagedObjectContextPtr newBackgroundContextLocked();

    Configuration configuration_;
    platform::PersistentContainerPtr containerStore_;
    std::map<ContextKey, platform::ManagedObjectContextPtr> consistentContexts_;
    std::vector<std::string> registeredModels_;
    mutable MutexLock registeredModelLock_;
};

// The context's merge policy; setting nothing leaves it as it is.
std::optional<platform::MergePolicyType> mergeConflictResolutionPolicy(
    const platform::ManagedObjectContext& context);
void setMergeConflictResolutionPolicy(platform::ManagedObjectContext& context,
                                      std::optional<platform::MergePolicyType> policy);

// Saves; a failure is printed as "Error saving core data context (<line>:
// <file>) - <error>" and the program goes on.
void noThrowSave(platform::ManagedObjectContext& context,
                 SourceLocation location = SourceLocation::current());

}  // namespace quillbox
