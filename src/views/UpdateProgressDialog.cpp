#include "views/UpdateProgressDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace platform::qt {

QString byteProgressText(std::uint64_t received, std::uint64_t expected) {
    const QLocale locale;
    const auto size = [&](std::uint64_t bytes) {
        return locale.formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
    };
    return QStringLiteral("%1 of %2").arg(size(received), size(expected));
}

UpdateProgressDialog::UpdateProgressDialog(std::function<void()> cancel)
    : cancel_(std::move(cancel)) {
    setWindowTitle(QStringLiteral("Software Update"));
    status_ = new QLabel(QStringLiteral("Downloading update…"), this);
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
    status_->setText(QStringLiteral("Downloading update… ") + byteProgressText(received, expected));
}

void UpdateProgressDialog::showInstalling() {
    status_->setText(QStringLiteral("Installing update…"));
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
