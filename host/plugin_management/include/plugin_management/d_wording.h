#pragma once

#include <plugin_management/plugin_management_global.h>

#include <QMetaType>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>
#include <type_traits>

/// A text for people that can be said in any language: its English source with the places %1 to %9, and what
/// stands in them, names or wordings in turn. It is worded where it is shown.
class PLUGIN_MANAGEMENT_EXPORT DWording
{
public:
    /// Gives a source in another language, or as it is when it has none of it there.
    using Translation = std::function<QString(const QString& source)>;

    /// Says nothing.
    DWording() = default;
    /// What is the same in every language.
    static DWording name(const QString& name);
    /// What the system, a plugin or another program says; a catalogue has it as a whole, if at all.
    static DWording told(const QString& text);

    /// The same with arguments (wordings, names and whole numbers) in the next places.
    template <typename... Arguments>
    DWording arg(const Arguments&... arguments) const
    {
        return withArguments({asWording(arguments)...});
    }

    /// The same with each name as change gives it.
    DWording withNames(const std::function<QString(const QString& name)>& change) const;

    bool isEmpty() const;
    QString english() const;
    QString in(const Translation& translation) const;

    bool operator==(const DWording& other) const;
    bool operator!=(const DWording& other) const { return !(*this == other); }

private:
    struct Content;

    explicit DWording(const Content& content);
    const Content& content() const;
    DWording withArguments(const QVector<DWording>& arguments) const;
    static DWording asWording(const DWording& wording) { return wording; }
    static DWording asWording(const QString& text) { return name(text); }
    template <typename Number, std::enable_if_t<std::is_integral_v<Number>, bool> = true>
    static DWording asWording(Number number)
    {
        return name(QString::number(number));
    }

    /// Null when it says nothing: every answer carries a failure, which seldom is one.
    std::shared_ptr<const Content> m_content;
};

/// The wording of an English source. The catalogues of other languages have their texts by this source:
/// literals only, so that all of them can be found.
PLUGIN_MANAGEMENT_EXPORT DWording wording(const char* source);

Q_DECLARE_METATYPE(DWording)
