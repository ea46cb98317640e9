#pragma once

#include <QString>
#include <optional>
#include <utility>
#include <variant>

// A failure as a value: what went wrong, in words for people and in a kind for code.
//
// Nothing is thrown across a folder's interface. What the world can refuse returns an
// XPResult<T> (a value or an XPError) or, where there is no value, a std::optional<XPError>
// (nothing means success). "There is none" is never an error: that answer is part of T.
// Threads: a value.
struct [[nodiscard]] XPError
{
    enum class Kind {
        InvalidArgument, // the caller's mistake: empty path, wrong kind of value
        Malformed,       // bytes or text that do not parse; `offset` says where, if known
        TooLarge,        // over a limit of a format, of ours or of the file system
        NotFound,        // no such file, or not any more
        NotPermitted,    // EACCES, EPERM: the user lacks the right
        ReadOnly,        // a file system that takes no writes
        NoSpace,         // full disk, quota, or no room left for attributes
        Unsupported,     // the file system or the machine cannot do this at all
        Cancelled,       // the user said no
        Io,              // everything else the system reported
    };

    // Domains: system call failures carry their errno as code in `posixDomain`.
    static const QString posixDomain;  // "posix"
    static const QString karvexDomain; // "karvex"
    static const QString murnDomain;   // "murn": everything of our own without a given domain

    Kind kind = Kind::Io;
    QString domain;
    qint64 code = 0;
    QString message; // one sentence for people; the "info" of the convention's error objects
    QString path;    // the file concerned, when known
    std::optional<qint64> offset; // where in the input, in its own units

    // The failure of a system call: kind by errno, message "errno error: N, TEXT".
    static XPError fromErrno(int number, const QString &path = {});
    static XPError malformed(const QString &message, std::optional<qint64> offset = {});
    static XPError make(Kind kind, const QString &message, const QString &path = {});

    // The message as a line that names the file already shows it: without the number.
    QString reason() const;

    bool operator==(const XPError &) const = default;
};

// "errno error: N, TEXT" with the system's text for the number.
QString xpErrnoString(int number);

// A T or the reason why there is none.
template <typename T>
class [[nodiscard]] XPResult
{
public:
    // NOLINTBEGIN(google-explicit-constructor): returning either side is the point
    XPResult(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
    XPResult(XPError error) : m_state(std::in_place_index<1>, std::move(error)) {}
    // NOLINTEND(google-explicit-constructor)

    explicit operator bool() const { return m_state.index() == 0; }
    bool hasValue() const { return m_state.index() == 0; }

    // Only when hasValue().
    const T &value() const & { return std::get<0>(m_state); }
    T &&value() && { return std::get<0>(std::move(m_state)); }
    const T &operator*() const & { return value(); }
    T &&operator*() && { return std::get<0>(std::move(m_state)); }
    const T *operator->() const { return &value(); }
    T valueOr(T fallback) const { return hasValue() ? value() : std::move(fallback); }

    // Only when !hasValue().
    const XPError &error() const { return std::get<1>(m_state); }

private:
    std::variant<T, XPError> m_state;
};
