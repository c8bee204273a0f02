#include "support/CoreDataStack.h"

#include <mutex>

#include "platform/Platform.h"
#include "support/ErrorText.h"
#include "support/Fatal.h"
#include "support/NotificationCenter.h"
#include "support/SimpleError.h"
#include "support/StandardOutput.h"

namespace quillbox {

namespace {

// Guards every stack's configuration, container and named contexts.
MutexLock& stackLock() {
    static MutexLock lock;
    return lock;
}

platform::PersistentStoreDescription inMemoryStore() {
    platform::PersistentStoreDescription description;
    description.type = platform::PersistentStoreDescription::Type::inMemory;
    description.url = "/dev/null";
    return description;
}

void loadStores(platform::PersistentContainer& container, const StoreOption& option) {
    if (auto* sql = std::get_if<StoreOption::Sql>(&option.kind)) {
        if (sql->configuration) {
            container.addPersistentStore(sql->configuration->storeDescription());
            return;
        }
        try {
            container.loadPersistentStores();
        } catch (const std::exception& error) {
            fatalError(std::string("Failed to load persistent store: ") + error.what());
        }
    } else if (std::holds_alternative<StoreOption::InMemory>(option.kind)) {
        container.addPersistentStore(inMemoryStore());
    } else {
        std::get<StoreOption::Custom>(option.kind).loader(container);
    }
}

}  // namespace

const ContextKey ContextKey::global{"coredatastack.contextkey.global"};
const ContextKey ContextKey::main{"coredatastack.contextkey.main"};

CoreDataStack::Error::Error(Kind kind, std::string subject, const std::string& text)
    : std::runtime_error(text), kind_(kind), subject_(std::move(subject)) {}

CoreDataStack::Error CoreDataStack::Error::noCoreDataModel(const std::string& atPath) {
    return Error(Kind::noCoreDataModel, atPath, "No object model named " + atPath);
}

CoreDataStack::Error CoreDataStack::Error::noContextRegistered(const ContextKey& forKey) {
    return Error(Kind::noContextRegistered, forKey.rawValue,
                 "No context registered for the key " + forKey.rawValue);
}

CoreDataStack::Error CoreDataStack::Error::cantFindObjectModel(const std::filesystem::path& at) {
    return Error(Kind::cantFindObjectModel, at.string(),
                 "Can't load the object model at " + at.string());
}

CoreDataStack::Error CoreDataStack::Error::containerAlreadyConfigured() {
    return Error(Kind::containerAlreadyConfigured, "", "The container is already configured");
}

CoreDataStack::Error CoreDataStack::Error::coreDataStackNeverConfigured() {
    return Error(Kind::coreDataStackNeverConfigured, "",
                 "The stack's container was never configured");
}

CoreDataStackConfiguration CoreDataStackConfiguration::named(const std::string& modelFileName) {
    auto url = platform::objectStore().urlForModel(modelFileName);
    if (!url)
        throw CoreDataStack::Error::noCoreDataModel(modelFileName);
    return CoreDataStackConfiguration(*url);
}

CoreDataStack::CoreDataStack(Configuration configuration, bool configureContainerImmediately)
    : configuration_(std::move(configuration)) {
    if (configureContainerImmediately)
        configureContainer();
}

std::unique_ptr<CoreDataStack> CoreDataStack::withModelFileName(
    const std::string& modelFileName, bool configureContainerImmediately) {
    return std::make_unique<CoreDataStack>(Configuration::named(modelFileName),
                                           configureContainerImmediately);
}

std::unique_ptr<CoreDataStack> CoreDataStack::withModelURL(const std::filesystem::path& modelURL,
                                                           bool configureContainerImmediately) {
    return std::make_unique<CoreDataStack>(Configuration(modelURL), configureContainerImmediately);
}

CoreDataStack::Configuration CoreDataStack::configuration() const {
    std::lock_guard guard(stackLock());
    return configuration_;
}

void CoreDataStack::setConfiguration(Configuration configuration) {
    std::lock_guard guard(stackLock());
    if (containerStore_) {
        printLine(
            "Warning: Trying to update CoreDataStack configuration AFTER container has already "
            "been configured!");
        return;
    }
    configuration_ = std::move(configuration);
}

platform::PersistentContainerPtr CoreDataStack::container() const {
    std::lock_guard guard(stackLock());
    return containerStore_;
}

platform::PersistentContainerPtr CoreDataStack::configuredContainer() {
    std::lock_guard guard(stackLock());
    if (!containerStore_)
        configureContainerLocked();
    return containerStore_;
}

platform::ManagedObjectContextPtr CoreDataStack::mainContext() {
    return configuredContainer()->viewContext();
}

void CoreDataStack::configureContainer() {
    std::lock_guard guard(stackLock());
    if (containerStore_)
        throw Error::containerAlreadyConfigured();
    configureContainerLocked();
}

// The container is kept only once its stores are loaded, so a failed set-up
// may be tried again.
void CoreDataStack::configureContainerLocked() {
    auto& objectStore = platform::objectStore();
    platform::ObjectModel model;
    try {
        model = objectStore.loadModel(configuration_.modelURL);
    } catch (const platform::ObjectStoreError&) {
        throw Error::cantFindObjectModel(configuration_.modelURL);
    }
    auto container =
        objectStore.makeContainer(configuration_.modelURL.stem().string(), std::move(model));
    loadStores(*container, configuration_.storeOption);
    auto viewContext = container->viewContext();
    viewContext->setMergePolicy(configuration_.mainContextDefaultMergePolicy);
    viewContext->setAutomaticallyMergesChangesFromParent(
        configuration_.mainContextAutomaticallyMergeChanges);
    consistentContexts_[ContextKey::main] = viewContext;
    containerStore_ = std::move(container);
}

platform::ManagedObjectContextPtr CoreDataStack::newBackgroundContext() {
    std::lock_guard guard(stackLock());
    return newBackgroundContextLocked();
}

platform::ManagedObjectContextPtr CoreDataStack::newBackgroundContextLocked() {
    if (!containerStore_)
        configureContainerLocked();
    auto context = containerStore_->newBackgroundContext();
    context->setMergePolicy(configuration_.newBackgroundContextDefaultMergePolicy);
    return context;
}

platform::ManagedObjectContextPtr CoreDataStack::registerConsistentContext(
    platform::ManagedObjectContextPtr context, const ContextKey& key) {
    std::lock_guard guard(stackLock());
    if (!containerStore_)
        configureContainerLocked();
    if (auto found = consistentContexts_.find(key); found != consistentContexts_.end())
        return found->second;
    if (!context)
        context = newBackgroundContextLocked();
    consistentContexts_[key] = context;
    return context;
}

void CoreDataStack::deregisterConsistentContext(const ContextKey& key) {
    std::lock_guard guard(stackLock());
    if (!containerStore_)
        throw Error::coreDataStackNeverConfigured();
    if (key == ContextKey::main)
        throw SimpleError("Cannot deregister main (view) context");
    consistentContexts_.erase(key);
}

platform::ManagedObjectContextPtr CoreDataStack::context(const ContextKey& key) const {
    std::lock_guard guard(stackLock());
    if (!containerStore_)
        throw Error::coreDataStackNeverConfigured();
    auto found = consistentContexts_.find(key);
    if (found == consistentContexts_.end())
        throw Error::noContextRegistered(key);
    return found->second;
}

void CoreDataStack::registerModel(const std::string& entityName) {
    registeredModelLock_.withLock([&] { registeredModels_.push_back(entityName); });
}

std::vector<std::string> CoreDataStack::registeredModels() const {
    return registeredModelLock_.withLock([&] { return registeredModels_; });
}

void CoreDataStack::save(const platform::ManagedObjectContextPtr& context,
                         std::optional<platform::MergePolicyType> mergePolicyOverride) {
    std::exception_ptr failure;
    context->performAndWait([&] {
        const auto ownPolicy = context->mergePolicy();
        if (mergePolicyOverride)
            context->setMergePolicy(*mergePolicyOverride);
        try {
            context->save();
        } catch (...) {
            failure = std::current_exception();
        }
        context->setMergePolicy(ownPolicy);
    });
    if (failure)
        std::rethrow_exception(failure);
}

void CoreDataStack::resetRegisteredTypeInContainer(const std::string& entityName) {
    auto context = newBackgroundContext();
    context->performAndWait([&] {
        for (const auto& object : context->fetch(platform::FetchRequest{entityName, {}, {}, 0}))
            context->deleteObject(object);
        context->save();
    });
    NotificationCenter::defaultCenter().post({didResetRegisteredTypeNotification, entityName});
}

void CoreDataStack::resetRegisteredTypesInContainer() {
    for (const auto& entityName : registeredModels())
        resetRegisteredTypeInContainer(entityName);
    NotificationCenter::defaultCenter().post({didResetRegisteredTypesNotification, this});
}

std::optional<platform::MergePolicyType> mergeConflictResolutionPolicy(
    const platform::ManagedObjectContext& context) {
    return context.mergePolicy();
}

void setMergeConflictResolutionPolicy(platform::ManagedObjectContext& context,
                                      std::optional<platform::MergePolicyType> policy) {
    if (policy)
        context.setMergePolicy(*policy);
}

void noThrowSave(platform::ManagedObjectContext& context, SourceLocation location) {
    try {
        context.save();
    } catch (...) {
        printLine("Error saving core data context (" + std::to_string(location.line()) + ":" +
                  location.file_name() + ") - " + errorText(std::current_exception()));
    }
}

}  // namespace quillbox
