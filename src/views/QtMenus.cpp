#include "views/QtMenus.h"

#include <QAction>
#include <QMenu>
#include <QString>
#include <QStringList>
#include <cctype>

#include "views/QtImages.h"

namespace platform::qt {

namespace {

QStringList modifierNames(ModifierFlags flags) {
    QStringList names;
    if (flags & modifier::command)
        names << QStringLiteral("Ctrl");
    if (flags & modifier::control)
        names << QStringLiteral("Meta");
    if (flags & modifier::option)
        names << QStringLiteral("Alt");
    if (flags & modifier::shift)
        names << QStringLiteral("Shift");
    return names;
}

void addItem(QMenu& target, const std::shared_ptr<MenuItem>& item) {
    if (item->isSeparatorItem()) {
        target.addSeparator();
        return;
    }
    const QString title = QString::fromStdString(item->title());
    if (item->submenu()) {
        QMenu* submenu = target.addMenu(title);
        followMenu(*submenu, item->submenu());
        return;
    }
    QAction* action = target.addAction(title);
    action->setShortcut(keySequenceFor(*item));
    if (item->image())
        action->setIcon(iconFor(*item->image()));
    std::weak_ptr<MenuItem> weakItem = item;
    QObject::connect(action, &QAction::triggered, action, [weakItem] {
        if (auto chosen = weakItem.lock())
            chosen->performAction();
    });
}

}  // namespace

QKeySequence keySequenceFor(const MenuItem& item) {
    const std::string& key = item.keyEquivalent();
    if (key.empty())
        return {};
    ModifierFlags flags = item.keyEquivalentModifierMask();
    QString keyName = QString::fromStdString(key);
    if (key.size() == 1 && std::isupper(static_cast<unsigned char>(key[0]))) {
        flags |= modifier::shift;
    }
    keyName = keyName.toUpper();
    QStringList parts = modifierNames(flags);
    parts << keyName;
    return QKeySequence::fromString(parts.join(QLatin1Char('+')), QKeySequence::PortableText);
}

void fillMenu(QMenu& target, const Menu& source) {
    target.clear();
    for (const auto& item : source.itemArray())
        addItem(target, item);
}

void followMenu(QMenu& target, std::shared_ptr<Menu> source) {
    target.setTitle(QString::fromStdString(source ? source->title() : std::string()));
    QObject::connect(&target, &QMenu::aboutToShow, &target, [&target, source] {
        if (source)
            fillMenu(target, *source);
    });
}

}  // namespace platform::qt
