#include "views/UpdateFoundDialog.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace platform::qt {

namespace {

// A browser that fetches nothing: a picture in the notes takes no room and
// any other resource stays empty.
class SealedTextBrowser final : public QTextBrowser {
  public:
    using QTextBrowser::QTextBrowser;
    QVariant loadResource(int type, const QUrl&) override {
        if (type == QTextDocument::ImageResource) {
            QImage nothing(1, 1, QImage::Format_ARGB32);
            nothing.fill(Qt::transparent);
            return nothing;
        }
        return {};
    }
};

QString text(const std::string& value) {
    return QString::fromStdString(value);
}

QPushButton* makeButton(const char* title, QWidget* parent) {
    auto* button = new QPushButton(QString::fromUtf8(title), parent);
    button->setAccessibleName(button->text());
    return button;
}

}  // namespace

void showReleaseNotes(QTextBrowser& view, const update::ReleaseNotes& notes) {
    const auto body = text(notes.text);
    switch (notes.format) {
        case update::ReleaseNotes::Format::plainText:
            view.setPlainText(body);
            break;
        case update::ReleaseNotes::Format::markdown:
            view.setMarkdown(body);
            break;
        case update::ReleaseNotes::Format::html:
            view.setHtml(body);
            break;
    }
}

UpdateFoundDialog::UpdateFoundDialog(const update::UpdateFoundAlert& alert, Reply reply)
    : reply_(std::move(reply)) {
    setWindowTitle(QStringLiteral("Software Update"));

    auto* icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_BrowserReload).pixmap(48, 48));
    icon->setAccessibleName(QStringLiteral("Update"));
    auto* title = new QLabel(text(alert.title), this);
    QFont bold = title->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    title->setFont(bold);
    auto* message = new QLabel(text(alert.message), this);
    message->setWordWrap(true);

    auto* heading = new QVBoxLayout;
    heading->addWidget(title);
    heading->addWidget(message);
    auto* top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addLayout(heading, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    if (!alert.releaseNotes.text.empty()) {
        auto* caption = new QLabel(QStringLiteral("Release Notes:"), this);
        notes_ = new SealedTextBrowser(this);
        notes_->setOpenLinks(false);
        notes_->setAccessibleName(QStringLiteral("Release Notes"));
        notes_->setMinimumSize(440, 200);
        showReleaseNotes(*notes_, alert.releaseNotes);
        connect(notes_, &QTextBrowser::anchorClicked, this, [](const QUrl& url) {
            if (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"))
                QDesktopServices::openUrl(url);
        });
        caption->setBuddy(notes_);
        layout->addWidget(caption);
        layout->addWidget(notes_, 1);
    }

    skip_ = makeButton("Skip This Version", this);
    skip_->setVisible(alert.canSkip);
    remind_ = makeButton("Remind Me Later", this);
    install_ = makeButton(alert.installButton.c_str(), this);
    install_->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(skip_);
    buttons->addStretch(1);
    buttons->addWidget(remind_);
    buttons->addWidget(install_);
    layout->addLayout(buttons);

    connect(skip_, &QPushButton::clicked, this, [this] { answer(update::UpdateChoice::skip); });
    connect(remind_, &QPushButton::clicked, this,
            [this] { answer(update::UpdateChoice::remindLater); });
    connect(install_, &QPushButton::clicked, this,
            [this] { answer(update::UpdateChoice::install); });
}

void UpdateFoundDialog::answer(update::UpdateChoice choice) {
    auto reply = std::exchange(reply_, {});
    hide();
    deleteLater();
    if (reply)
        reply(choice);
}

}  // namespace platform::qt
