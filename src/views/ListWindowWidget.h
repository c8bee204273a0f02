#pragma once

#include <QPointer>
#include <QWidget>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>

#include "firstrun/PermissionRequestView.h"
#include "listwindow/ListWindowView.h"
#include "platform/Subscription.h"
#include "support/Signal.h"
#include "views/OncePerTurn.h"

class QPushButton;
class QWindow;

namespace platform::qt {

class ListWindowRowList;

// The panel's content: one of three trees, drawn from the content the
// provider computes. A change marks the drawing stale; a shown panel
// brings it up to date once per turn of the event loop, however many
// changes came, and a hidden one only when it is about to show. The rows
// are kept by their window's identity: only the rows whose window
// appeared, went or changed are touched.
class ListWindowWidget final : public QWidget {
  public:
    using Content = tarnwick::ListWindowView::Content;
    using ContentProvider = std::function<Content()>;

    // The permission request, where given, fills the permission tree.
    ListWindowWidget(ContentProvider provider, quillbox::Signal<>& changed,
                     tarnwick::ListWindowView::ListRow::Coordinator& coordinator,
                     QWidget* parent = nullptr,
                     tarnwick::PermissionRequestView* permissionView = nullptr);
    ~ListWindowWidget() override;

    // Follows a view's own signals too: a window's row drawn again when the
    // window changed, and everything brought up to date before a showing.
    void follow(tarnwick::ListWindowView& view);

    // The tree shown now.
    QWidget* tree() const { return tree_; }
    // The rows, while the tree has them.
    ListWindowRowList* rowList() const { return rowList_; }

    // Draws what is true now: the content, and every row read again.
    void redraw();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void markStale();
    void apply(bool redrawAll);
    void replaceTree(QWidget* next);
    void updateMenuAndList(const Content& content, bool redrawAll);
    void applyLimits();
    int listHeightLimit(const QSize& frame) const;
    void sendOpacityAtOnce();

    ContentProvider provider_;
    tarnwick::ListWindowView::ListRow::Coordinator& coordinator_;
    tarnwick::PermissionRequestView* permissionView_;
    QWidget* tree_ = nullptr;
    std::optional<tarnwick::ListWindowView::Tree> treeKind_;
    QPushButton* menuButton_ = nullptr;
    std::optional<tarnwick::ListWindowView::Menu> menu_;
    QWidget* emptyText_ = nullptr;
    std::string emptyTextShown_;
    ListWindowRowList* rowList_ = nullptr;
    bool stale_ = false;
    // However many changes come in one turn, the content is computed and
    // drawn once, in the next.
    OncePerTurn applyOnce_;
    std::unordered_set<std::size_t> changedWindows_;
    bool allWindowsChanged_ = false;
    QPointer<QWindow> opacityFollowed_;
    platform::Subscription changes_;
    platform::Subscription windowChanges_;
    platform::Subscription presentations_;
};

}  // namespace platform::qt
