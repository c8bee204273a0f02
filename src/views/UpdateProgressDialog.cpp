#include "views/UpdateProgressDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/update/UpdateAlerts.h"

namespace platform::qt {

UpdateProgressDialog::UpdateProgressDialog(std::function<void()> cancel)
    : cancel_(std::move(cancel)) {
    setWindowTitle(QStringLiteral("Software Update"));
    status_ = new QLabel(QString::fromStdString(update::downloadStatus(0, 0)), this);
    status_->setMinimumWidth(360);
    bar_ = new QProgressBar(this);
    bar_->setAccessibleName(QStringLiteral("Download progress"));
    bar_->setRange(0, 0);
    bar_->setTextVisible(false);
    cancelButton_ = new QPushButton(QStringLiteral("Cancel"), this);
    cancelButton_->setAccessibleName(cancelButton_->text());
    connect(cancelButton_, &QPushButton::clicked, this, [this] { reject(); });

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancelButton_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(status_);
    layout->addWidget(bar_);
    layout->addLayout(buttons);
}

void UpdateProgressDialog::setProgress(std::uint64_t received, std::uint64_t expected) {
    if (expected == 0)
        return;
    // Per mille, so that large archives fit the bar's integers.
    bar_->setRange(0, 1000);
    bar_->setValue(static_cast<int>(std::min<std::uint64_t>(received, expected) * 1000 / expected));
    status_->setText(QString::fromStdString(update::downloadStatus(received, expected)));
}

void UpdateProgressDialog::showInstalling() {
    status_->setText(QString::fromUtf8(update::installingStatus));
    bar_->setAccessibleName(QStringLiteral("Installation progress"));
    bar_->setRange(0, 0);
    cancelButton_->setEnabled(false);
}

void UpdateProgressDialog::reject() {
    if (!cancelButton_->isEnabled())
        return;
    auto cancel = std::exchange(cancel_, {});
    dismiss();
    if (cancel)
        cancel();
}

void UpdateProgressDialog::dismiss() {
    cancel_ = {};
    hide();
    deleteLater();
}

}  // namespace platform::qt
