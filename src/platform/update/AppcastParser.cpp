#include "platform/update/AppcastParser.h"

#include <charconv>
#include <pugixml.hpp>

namespace platform::update {

namespace {

// The prefix an element's feed gave the update namespace, found on the
// element or the nearest of its ancestors that declares it.
std::optional<std::string> updatePrefixAt(pugi::xml_node node) {
    for (; node; node = node.parent()) {
        for (const auto& attribute : node.attributes()) {
            const std::string_view name = attribute.name();
            if (name.starts_with("xmlns:") &&
                std::string_view(attribute.value()) == appcastNamespace)
                return std::string(name.substr(6));
        }
    }
    return std::nullopt;
}

// Names in the update namespace, spelt with the prefix the feed chose.
class UpdateNames {
  public:
    explicit UpdateNames(std::optional<std::string> prefix) : prefix_(std::move(prefix)) {}
    std::string operator()(std::string_view local) const {
        return prefix_ ? *prefix_ + ":" + std::string(local) : "\x01";  // matches nothing
    }

  private:
    std::optional<std::string> prefix_;
};

// All the text of an element, CDATA sections included.
std::string textOf(pugi::xml_node node) {
    std::string text;
    for (const auto& child : node.children()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            text += child.value();
    }
    return text;
}

std::string trimmed(std::string text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return {};
    const auto last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

std::string trimmedTextOf(pugi::xml_node node) {
    return trimmed(textOf(node));
}

ReleaseNotes::Format notesFormat(std::string_view format) {
    if (format == "plain-text")
        return ReleaseNotes::Format::plainText;
    if (format == "markdown")
        return ReleaseNotes::Format::markdown;
    return ReleaseNotes::Format::html;
}

std::optional<std::uint64_t> lengthOf(std::string_view text) {
    std::uint64_t value = 0;
    const auto end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value == 0)
        return std::nullopt;
    return value;
}

class ItemReader {
  public:
    ItemReader(pugi::xml_node item, const UpdateNames& name) : item_(item), name_(name) {}

    // False for an item of another operating system, which is left out.
    bool isForThisSystem() const {
        const auto enclosure = item_.child("enclosure");
        if (!enclosure)
            return true;
        const auto os = enclosure.attribute(name_("os").c_str());
        return !os || std::string_view(os.value()) == "linux";
    }

    // Empty when the item is whole; otherwise what is missing.
    std::string read(AppcastItem& out) const {
        out.title = trimmedTextOf(item_.child("title"));
        out.pubDate = trimmedTextOf(item_.child("pubDate"));
        out.link = trimmedTextOf(item_.child("link"));
        readVersions(out);
        readNotes(out);
        readChannelAndKinds(out);
        if (out.version.empty())
            return "an item has no version";
        if (out.informationalUpdate && !item_.child("enclosure"))
            return {};
        return readEnclosure(out);
    }

  private:
    void readVersions(AppcastItem& out) const {
        const auto enclosure = item_.child("enclosure");
        out.version = trimmedTextOf(item_.child(name_("version").c_str()));
        if (out.version.empty())
            out.version = trimmed(enclosure.attribute(name_("version").c_str()).value());
        out.shortVersionString = trimmedTextOf(item_.child(name_("shortVersionString").c_str()));
        if (out.shortVersionString.empty()) {
            out.shortVersionString =
                trimmed(enclosure.attribute(name_("shortVersionString").c_str()).value());
        }
        out.minimumAutoupdateVersion =
            trimmedTextOf(item_.child(name_("minimumAutoupdateVersion").c_str()));
    }

    void readNotes(AppcastItem& out) const {
        out.releaseNotesLink = trimmedTextOf(item_.child(name_("releaseNotesLink").c_str()));
        if (const auto description = item_.child("description")) {
            out.releaseNotes =
                ReleaseNotes{notesFormat(description.attribute(name_("format").c_str()).value()),
                             textOf(description)};
        }
    }

    void readChannelAndKinds(AppcastItem& out) const {
        if (const auto channel = item_.child(name_("channel").c_str()))
            out.channel = trimmedTextOf(channel);
        if (const auto critical = item_.child(name_("criticalUpdate").c_str())) {
            out.criticalUpdate = true;
            out.criticalBelowVersion =
                trimmed(critical.attribute(name_("version").c_str()).value());
        }
        if (const auto informational = item_.child(name_("informationalUpdate").c_str())) {
            out.informationalUpdate = true;
            const auto versionName = name_("version");
            for (const auto& version : informational.children(versionName.c_str()))
                out.informationalForVersions.push_back(trimmedTextOf(version));
            out.informationalBelowVersion =
                trimmedTextOf(informational.child(name_("belowVersion").c_str()));
        }
    }

    std::string readEnclosure(AppcastItem& out) const {
        const auto enclosure = item_.child("enclosure");
        if (!enclosure)
            return "the item " + out.version + " has no archive";
        Enclosure archive;
        archive.url = trimmed(enclosure.attribute("url").value());
        archive.type = enclosure.attribute("type").value();
        archive.edSignature = trimmed(enclosure.attribute(name_("edSignature").c_str()).value());
        archive.os = enclosure.attribute(name_("os").c_str()).value();
        if (archive.url.empty())
            return "the archive of " + out.version + " has no address";
        const auto length = lengthOf(trimmed(enclosure.attribute("length").value()));
        if (!length)
            return "the archive of " + out.version + " has no valid length";
        archive.length = *length;
        if (archive.edSignature.empty())
            return "the archive of " + out.version + " has no signature";
        out.enclosure = std::move(archive);
        return {};
    }

    pugi::xml_node item_;
    const UpdateNames& name_;
};

AppcastReading damaged(std::string problem) {
    return {std::nullopt, std::move(problem)};
}

}  // namespace

AppcastReading parseAppcast(std::string_view bytes) {
    if (bytes.size() > maximumFeedBytes)
        return damaged("it is larger than a feed can be");
    pugi::xml_document document;
    const auto result =
        document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default | pugi::parse_doctype);
    if (!result)
        return damaged(std::string("it is not XML (") + result.description() + ")");
    for (const auto& node : document.children()) {
        if (node.type() == pugi::node_doctype)
            return damaged("it declares a document type, which a feed must not");
    }
    const auto rss = document.child("rss");
    const auto channel = rss.child("channel");
    if (!channel)
        return damaged("it has no RSS channel");

    Appcast appcast;
    appcast.title = trimmedTextOf(channel.child("title"));
    appcast.link = trimmedTextOf(channel.child("link"));
    for (const auto& item : channel.children("item")) {
        const UpdateNames names(updatePrefixAt(item));
        const ItemReader reader(item, names);
        if (!reader.isForThisSystem())
            continue;
        AppcastItem read;
        if (auto problem = reader.read(read); !problem.empty())
            return damaged(std::move(problem));
        appcast.items.push_back(std::move(read));
    }
    return {std::move(appcast), {}};
}

}  // namespace platform::update
