#include "json_text.h"

#include <nlohmann/json.hpp>

#include <cstring>
#include <istream>
#include <limits>
#include <streambuf>
#include <utility>

namespace {

using JsonParser = nlohmann::json;

/// The bytes of a text, of which it is known how many have been read.
class ByteReader : public std::streambuf
{
public:
    explicit ByteReader(const QByteArray& text)
    {
        char* begin = const_cast<char*>(text.constData()); // what is read is not written to
        setg(begin, begin, begin + text.size());
    }
    int position() const { return static_cast<int>(gptr() - eback()); }
};

/// Builds the nodes of a text while it is read.
class NodeBuilder : public nlohmann::json_sax<JsonParser>
{
public:
    NodeBuilder(const QByteArray& text, const ByteReader& reader, QVector<JsonMistake>* mistakes)
        : m_text(text)
        , m_reader(reader)
        , m_mistakes(mistakes)
    {}

    JsonNode takeRoot() { return std::move(m_root); }

    bool null() override { return scalar(QVariant()); }
    bool boolean(bool value) override { return scalar(value); }
    bool number_integer(number_integer_t value) override { return scalar(static_cast<qlonglong>(value)); }
    bool number_unsigned(number_unsigned_t value) override
    {
        const bool isSmall = value <= static_cast<number_unsigned_t>(std::numeric_limits<qint64>::max());
        return scalar(isSmall ? QVariant(static_cast<qlonglong>(value))
                              : QVariant(static_cast<qulonglong>(value)));
    }
    bool number_float(number_float_t value, const string_t& /*text*/) override { return scalar(value); }
    bool string(string_t& value) override { return scalar(QString::fromStdString(value)); }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return open(JsonNode::Type::Object); }
    bool start_array(std::size_t /*size*/) override { return open(JsonNode::Type::List); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t& value) override
    {
        m_open.back().keyOffset = begin();
        m_open.back().key = QString::fromStdString(value);
        m_end = m_reader.position();
        return true;
    }
    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const JsonParser::exception& /*error*/) override
    {
        const int last = static_cast<int>(position) - 1;
        const int start = qMin(begin(), qMax(0, last));
        return fail(start, wording("expected JSON, found %1").arg(wordAt(start)));
    }

private:
    static constexpr std::size_t c_deepest = 1024;

    struct Open
    {
        JsonNode node;
        QString key; ///< of an object: that of the entry that is being read
        int keyOffset = 0;
    };

    /// Where the value begins that has just been read, or begins to be.
    int begin() const
    {
        int offset = m_end;
        while (offset < m_text.size() && std::strchr(" \t\r\n,:", m_text.at(offset)) != nullptr) {
            ++offset;
        }
        return offset;
    }

    /// What stands at offset, as far as it shows what is meant.
    DWording wordAt(int offset) const
    {
        constexpr int longest = 20;
        int end = offset;
        while (end < m_text.size() && end < offset + longest && m_text.at(end) != '\n') {
            ++end;
        }
        return end > offset ? DWording::name(inOneLine(QString::fromUtf8(m_text.mid(offset, end - offset))))
                            : wording("nothing more");
    }

    bool fail(int offset, const DWording& text)
    {
        m_mistakes->append({offset, text});
        return false;
    }

    bool scalar(const QVariant& value)
    {
        JsonNode node;
        node.scalar = value;
        node.offset = begin();
        m_end = m_reader.position();
        add(std::move(node));
        return true;
    }

    bool open(JsonNode::Type type)
    {
        if (m_open.size() == c_deepest) {
            return fail(begin(), wording("nested too deeply, expected at most %1 levels").arg(c_deepest));
        }
        Open opened;
        opened.node.type = type;
        opened.node.offset = begin();
        m_end = m_reader.position();
        m_open.push_back(std::move(opened));
        return true;
    }

    bool close()
    {
        JsonNode node = std::move(m_open.back().node);
        m_open.pop_back();
        m_end = m_reader.position();
        add(std::move(node));
        return true;
    }

    void add(JsonNode node)
    {
        if (m_open.empty()) {
            m_root = std::move(node);
            return;
        }
        Open& parent = m_open.back();
        if (parent.node.type == JsonNode::Type::List) {
            parent.node.elements.push_back(std::move(node));
            return;
        }
        node.offset = parent.keyOffset;
        if (!parent.node.entries.emplace(parent.key, std::move(node)).second) {
            m_mistakes->append({parent.keyOffset,
                                wording(R"(the entry "%1" stands here for the second time, expected it once)")
                                    .arg(inOneLine(parent.key))});
        }
    }

    const QByteArray& m_text;
    const ByteReader& m_reader;
    QVector<JsonMistake>* m_mistakes;
    JsonNode m_root;
    std::vector<Open> m_open; ///< the lists and objects whose end has not come yet
    int m_end = 0;            ///< of what was read last
};

} // namespace

QVariant JsonNode::toVariant() const
{
    if (type == Type::List) {
        QVariantList list;
        for (const JsonNode& element : elements) {
            list.append(element.toVariant());
        }
        return list;
    }
    if (type == Type::Object) {
        QVariantMap map;
        for (const auto& [key, entry] : entries) {
            map.insert(key, entry.toVariant());
        }
        return map;
    }
    return scalar;
}

std::optional<JsonNode> readJson(const QByteArray& text, QVector<JsonMistake>* mistakes)
{
    const int nul = text.indexOf('\0'); // the parser takes it for the end
    if (nul >= 0) {
        mistakes->append({nul, wording("expected JSON, found a NUL byte")});
        return std::nullopt;
    }
    ByteReader reader(text);
    std::istream stream(&reader);
    NodeBuilder builder(text, reader, mistakes);
    if (!JsonParser::sax_parse(stream, &builder)) {
        return std::nullopt;
    }
    return builder.takeRoot();
}

QString inOneLine(const QString& text)
{
    QString line;
    for (const QChar character : text) {
        if (character.category() == QChar::Other_Control) {
            line += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            line += character;
        }
    }
    return line;
}
