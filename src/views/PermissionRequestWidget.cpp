#include "views/PermissionRequestWidget.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "views/PaintedIcon.h"
#include "views/StyledLabel.h"

namespace platform::qt {

namespace {

constexpr int stepSpacing = 8;
constexpr int sealSize = 20;

QColor sealColor(tarnwick::PermissionRequestView::SealColor color) {
    return color == tarnwick::PermissionRequestView::SealColor::green ? QColor(0x28, 0xA7, 0x45)
                                                                      : QColor(0xE0, 0x30, 0x2A);
}

QPushButton* namedButton(const std::string& title, QWidget* parent) {
    auto* button = new QPushButton(QString::fromStdString(title), parent);
    button->setAccessibleName(QString::fromStdString(title));
    return button;
}

}  // namespace

PermissionRequestWidget::PermissionRequestWidget(tarnwick::PermissionRequestView& view,
                                                 QWidget* parent)
    : QWidget(parent), view_(view) {
    setObjectName(QStringLiteral("permissionRequest"));
    const auto drawing = view_.draw();
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(stepSpacing);
    layout->setAlignment(Qt::AlignHCenter);
    layout->addWidget(styledLabel(drawing.firstStep, this), 0, Qt::AlignHCenter);
    layout->addWidget(styledLabel(drawing.explanation, this), 0, Qt::AlignHCenter);

    auto* row = new QHBoxLayout;
    seal_ = new QLabel(this);
    seal_->setObjectName(QStringLiteral("permissionSeal"));
    seal_->setFixedSize(sealSize, sealSize);
    permissionButton_ = namedButton(drawing.permissionButton, this);
    row->addStretch();
    row->addWidget(seal_, 0, Qt::AlignVCenter);
    row->addWidget(permissionButton_, 0, Qt::AlignVCenter);
    row->addStretch();
    layout->addLayout(row);

    layout->addWidget(styledLabel(drawing.secondStep, this), 0, Qt::AlignHCenter);
    relaunchButton_ = namedButton(drawing.relaunchButton, this);
    layout->addWidget(relaunchButton_, 0, Qt::AlignHCenter);

    connect(permissionButton_, &QPushButton::clicked, this, [this] { view_.requestPermission(); });
    connect(relaunchButton_, &QPushButton::clicked, this, [this] { view_.relaunch(); });
    changes_ = view_.changed().connect([this] { redraw(); });
    redraw();
}

void PermissionRequestWidget::redraw() {
    const auto drawing = view_.draw();
    const QIcon icon =
        symbolIcon(QString::fromStdString(drawing.seal.name), sealColor(drawing.sealColor));
    seal_->setPixmap(icon.pixmap(QSize(sealSize, sealSize), devicePixelRatioF()));
    seal_->setAccessibleName(QString::fromStdString(drawing.sealAccessibleName));
    relaunchButton_->setEnabled(drawing.relaunchEnabled);
}

}  // namespace platform::qt
