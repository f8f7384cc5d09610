#include "platform/system/old_property_list.h"

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>
#include <QStringView>

namespace vesk {

namespace {

QString decoded(std::string_view bytes) {
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QStringDecoder decoder(QStringDecoder::encodingForData(view).value_or(QStringDecoder::Utf8));
    return decoder.decode(view);
}

// One piece of a list: a mark such as "{" or ";", a text, or its end. What is none of these is a mark that nothing
// expects.
struct Token {
    enum class Kind { mark, text, end };
    Kind kind = Kind::end;
    QChar mark;
    QString text;

    bool is(char16_t wanted) const { return kind == Kind::mark && mark == wanted; }
};

class Tokens {
public:
    explicit Tokens(QStringView list) : rest_(list) {}

    Token next() {
        skipBlanksAndComments();
        if (rest_.isEmpty()) {
            return {};
        }
        const QChar first = take();
        if (first == u'"' || first == u'\'') {
            return {Token::Kind::text, {}, quoted(first)};
        }
        if (!isPlain(first)) {
            return {Token::Kind::mark, first, {}};
        }
        QString text(first);
        while (!rest_.isEmpty() && isPlain(rest_.front())) {
            text += take();
        }
        return {Token::Kind::text, {}, text};
    }

private:
    // What a text needs no quotes for.
    static bool isPlain(QChar character) {
        const char16_t c = character.unicode();
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               QStringView(u"_$/:.-").contains(character);
    }

    QChar take() {
        const QChar first = rest_.front();
        rest_ = rest_.mid(1);
        return first;
    }

    void skipBlanksAndComments() {
        for (;;) {
            if (rest_.startsWith(u"//")) {
                const qsizetype end = rest_.indexOf(u'\n');
                rest_ = end < 0 ? QStringView() : rest_.mid(end);
            } else if (rest_.startsWith(u"/*")) {
                const qsizetype end = rest_.indexOf(u"*/", 2);
                rest_ = end < 0 ? QStringView() : rest_.mid(end + 2);
            } else if (!rest_.isEmpty() && rest_.front().isSpace()) {
                take();
            } else {
                return;
            }
        }
    }

    QString quoted(QChar quote) {
        QString text;
        while (!rest_.isEmpty()) {
            const QChar character = take();
            if (character == quote) {
                break;
            }
            text += character == u'\\' ? escaped() : character;
        }
        return text;
    }

    // The digits that follow, no more than so many.
    char16_t number(unsigned base, int digits) {
        unsigned value = 0;
        for (; digits > 0 && !rest_.isEmpty(); --digits) {
            bool isDigit = false;
            const unsigned digit = rest_.left(1).toUInt(&isDigit, static_cast<int>(base));
            if (!isDigit) {
                break;
            }
            value = value * base + digit;
            take();
        }
        return static_cast<char16_t>(value);
    }

    // What a backslash and the characters behind it stand for.
    QChar escaped() {
        if (rest_.isEmpty()) {
            return QChar::ReplacementCharacter;
        }
        if (rest_.front() >= u'0' && rest_.front() <= u'7') {
            // Above ASCII it is a number of NeXT's own character set, which no identifier needs.
            const char16_t value = number(8, 3);
            return value < 0x80 ? QChar(value) : QChar(QChar::ReplacementCharacter);
        }
        const QChar letter = take();
        switch (letter.unicode()) {
            case u'U':
                return number(16, 4);
            case u'n':
                return u'\n';
            case u't':
                return u'\t';
            case u'r':
                return u'\r';
            default:
                return letter;
        }
    }

    QStringView rest_;
};

// Reads past a value that began with this token; what is inside is matched by the number of brackets alone.
void skipValue(Tokens& tokens, Token token) {
    for (std::size_t depth = 0; token.kind != Token::Kind::end; token = tokens.next()) {
        if (token.is(u'{') || token.is(u'(') || token.is(u'<')) {
            ++depth;
        } else if (depth > 0 && (token.is(u'}') || token.is(u')') || token.is(u'>'))) {
            --depth;
        }
        if (depth == 0) {
            return;
        }
    }
}

}  // namespace

std::optional<std::string> textInOldPropertyList(std::string_view bytes, std::string_view key) {
    const QString list = decoded(bytes);
    const QString wanted = QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
    Tokens tokens(list);
    Token token = tokens.next();
    if (token.is(u'{')) {
        token = tokens.next();
    }
    while (token.kind == Token::Kind::text) {
        const bool isWanted = token.text == wanted;
        token = tokens.next();
        if (token.is(u'=')) {
            token = tokens.next();
            if (isWanted) {
                return token.kind == Token::Kind::text ? std::optional(token.text.toStdString()) : std::nullopt;
            }
            skipValue(tokens, token);
            token = tokens.next();
        }
        if (!token.is(u';')) {
            return std::nullopt;
        }
        token = tokens.next();
    }
    return std::nullopt;
}

}  // namespace vesk
