#include "support/EmailScanner.h"

#include <algorithm>

#include "support/EmailErrors.h"
#include "support/TextCharacters.h"

namespace quillbox::detail {

namespace {

constexpr std::string_view stopCharacters = "\\@\" ";

using Level = EmailAddress::SupportLevel;

class AddressScanner {
  public:
    explicit AddressScanner(std::string_view text) : text_(text) {}

    ScannedAddress scan() {
        for (;;) {
            takeOrdinaryRun();
            if (position_ >= text_.size())
                throw EmailError(EmailError::Case::invalidFormat);
            const char stop = text_[position_++];
            if (stop == '@' && !inQuotes_) {
                result_.domain = std::string(text_.substr(position_));
                return result_;
            }
            takeStop(stop);
        }
    }

  private:
    void takeOrdinaryRun() {
        const auto end = std::min(text_.find_first_of(stopCharacters, position_), text_.size());
        result_.localSection.append(text_.substr(position_, end - position_));
        position_ = end;
    }

    void takeStop(char stop) {
        switch (stop) {
            case '@':  // inside quotes: part of the local section, but not copied
                return;
            case '\\':
                takeEscape();
                return;
            case '"':
                takeQuote();
                return;
            case ' ':
                if (!inQuotes_)
                    throw EmailError(EmailError::Case::escapesAndSpacesOnlyAllowedWithinQuotes);
                result_.supportLevel = Level::technicallySupported;
                return;
            default:
                throw EmailError(EmailError::Case::scannerError);
        }
    }

    void takeEscape() {
        if (!inQuotes_)
            throw EmailError(EmailError::Case::escapesAndSpacesOnlyAllowedWithinQuotes);
        if (position_ >= text_.size())
            throw EmailError(EmailError::Case::escapedSequenceUnfinished);
        const auto length = characterLength(text_, position_);
        result_.localSection += '\\';
        result_.localSection.append(text_.substr(position_, length));
        position_ += length;
        result_.supportLevel = Level::technicallySupported;
    }

    // An opening quote may stand anywhere; a closing one must be the last
    // thing before the at sign, which is left for the next round.
    void takeQuote() {
        result_.localSection += '"';
        result_.supportLevel = Level::technicallySupported;
        if (!inQuotes_) {
            inQuotes_ = true;
            return;
        }
        inQuotes_ = false;
        if (position_ >= text_.size() || text_[position_] != '@')
            throw EmailError(EmailError::Case::quotesMustCoverEntireLocalSection);
    }

    std::string_view text_;
    std::size_t position_ = 0;
    bool inQuotes_ = false;
    ScannedAddress result_;
};

}  // namespace

ScannedAddress scanAddress(std::string_view text) {
    return AddressScanner(text).scan();
}

}  // namespace quillbox::detail
