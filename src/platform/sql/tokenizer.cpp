#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sql/tokenizer.h>

namespace kvarta16::sql {
namespace {

constexpr bool is_digit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

// Letters of any script; beyond ASCII all but the punctuation and the blanks that texts bring
// along.
constexpr bool is_letter(char16_t c) {
    const bool ascii = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
    const bool general_punctuation = c >= 0x2000 && c <= 0x206F;
    return ascii || (c >= 0x00C0 && c != 0x00D7 && c != 0x00F7 && !general_punctuation &&
                     c != 0x3000 && c != 0xFEFF);
}

constexpr bool is_name_part(char16_t c) {
    return is_letter(c) || is_digit(c) || c == u'$';
}

constexpr bool is_blank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

class Tokenizer {
  public:
    explicit Tokenizer(StringView statement) : statement_(statement) {}

    std::vector<Token> run() {
        std::vector<Token> tokens;
        tokens.reserve(statement_.size() / 4 + 8);
        do {
            while (is_blank(peek())) {
                ++at_;
            }
            tokens.push_back(next());
        } while (tokens.back().kind != TokenKind::End);
        return tokens;
    }

  private:
    // The character at a distance; 0 behind the end, which begins no token.
    [[nodiscard]] char16_t peek(std::size_t distance = 0) const {
        return at_ + distance < statement_.size() ? statement_[at_ + distance] : u'\0';
    }

    [[nodiscard]] Token token(TokenKind kind, std::size_t from) const {
        return {kind, statement_.substr(from, at_ - from), {}, from + 1};
    }

    Token next() {
        const std::size_t from = at_;
        if (at_ == statement_.size()) {
            return token(TokenKind::End, from);
        }
        const char16_t first = peek();
        if (is_letter(first)) {
            return word();
        }
        if (is_digit(first) || (first == u'.' && is_digit(peek(1)))) {
            return number();
        }
        switch (first) {
            case u'[':
                return enclosed(TokenKind::Name, u']', u"the bracket is not closed");
            case u'\'':
            case u'"':
                return enclosed(TokenKind::Text, first, u"the text has no closing quote");
            case u'#':
                return enclosed(TokenKind::Moment, u'#', u"the date has no closing #");
            default:
                return symbol();
        }
    }

    Token word() {
        const std::size_t from = at_;
        while (is_name_part(peek())) {
            ++at_;
        }
        return token(TokenKind::Word, from);
    }

    void skip_digits() {
        while (is_digit(peek())) {
            ++at_;
        }
    }

    Token number() {
        const std::size_t from = at_;
        skip_digits();
        if (peek() == u'.') {
            ++at_;
            skip_digits();
        }
        const bool has_sign = peek(1) == u'+' || peek(1) == u'-';
        if ((peek() == u'e' || peek() == u'E') && is_digit(peek(has_sign ? 2 : 1))) {
            at_ += has_sign ? 2 : 1;
            skip_digits();
        }
        if (is_name_part(peek()) || peek() == u'.') {
            ++at_;
            refuse(token(TokenKind::Number, from), u"this is no number");
        }
        return token(TokenKind::Number, from);
    }

    // From its opening to its closing character; the closing one doubled stands for itself.
    Token enclosed(TokenKind kind, char16_t closing, StringView unclosed) {
        const std::size_t from = at_++;
        String value;
        for (; at_ < statement_.size(); ++at_) {
            if (peek() == closing) {
                if (peek(1) != closing) {
                    ++at_;
                    Token result = token(kind, from);
                    result.value = std::move(value);
                    return result;
                }
                ++at_;
            }
            value += peek();
        }
        refuse(token(kind, from), unclosed);
    }

    Token symbol() {
        const std::size_t from = at_;
        const char16_t first = statement_[at_++];
        if (first == u'<' || first == u'>') {
            const bool two = peek() == u'=' || (first == u'<' && peek() == u'>');
            at_ += two ? 1 : 0;
        } else if (StringView(u"(){},;.*-+/\\^&=").find(first) == StringView::npos) {
            refuse(token(TokenKind::Symbol, from), u"this character has no meaning here");
        }
        return token(TokenKind::Symbol, from);
    }

    StringView statement_;
    std::size_t at_ = 0;
};

}  // namespace

std::vector<Token> tokenize(StringView statement) {
    return Tokenizer(statement).run();
}

void refuse(const Token& token, StringView reason, Long number) {
    constexpr std::size_t longest_shown = 40;
    String text = u"Syntax error in the statement at column ";
    text += from_utf8(std::to_string(token.column));
    if (token.kind == TokenKind::End) {
        text += u", its end: ";
    } else {
        const bool cut = token.source.size() > longest_shown;
        text.append(u", at ").append(token.source.substr(0, longest_shown));
        text += cut ? u"…: " : u": ";
    }
    throw Failure(number, text.append(reason));
}

}  // namespace kvarta16::sql
