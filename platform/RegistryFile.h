#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QtGlobal>

// The registry, kept in a text file in the regedit export syntax:
//
//   REGEDIT4                      (or "Windows Registry Editor Version 5.00")
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Shared Tools\MSINFO]
//   "PATH"="/usr/bin/hardinfo"
//   "Count"=dword:0000001a
//   "Blob"=hex:01,02,ff
//   "Expand"=hex(2):41,00
//
// Key and value names are case-insensitive. A missing file holds no keys; a file
// without the header line holds none either; a line that cannot be read is
// skipped, so its value reads as missing. Values are handed out as the narrow
// (byte) registry calls hand them out: a string is its UTF-8 bytes and one
// terminating zero byte, a double word its four bytes, least significant first.
class RegistryFile {
public:
    enum class Root { ClassesRoot, CurrentUser, LocalMachine, Users, CurrentConfig };

    // Value types, numbered as the registry numbers them.
    enum ValueType : quint32 {
        REG_NONE = 0,
        REG_SZ = 1,
        REG_EXPAND_SZ = 2,
        REG_BINARY = 3,
        REG_DWORD = 4,
        REG_MULTI_SZ = 7,
        REG_QWORD = 11,
    };

    // Results of the calls, numbered as the registry numbers them.
    enum Status : qint32 { Success = 0, FileNotFound = 2, MoreData = 234 };

    struct Value {
        quint32 type = REG_NONE;
        QByteArray data;
    };

    // The name of the file in the program folder.
    static QString fileName() { return QStringLiteral("Registry.reg"); }

    // An open key. It reads the file's contents, so it must not outlive the file
    // object it came from.
    class Key {
    public:
        Key() = default;
        bool isOpen() const { return values_ != nullptr; }
        // As the registry's value query: `size` is the capacity of `buffer` on the way
        // in (the buffer is grown to it when shorter) and the size of the data on the
        // way out. Data larger than the capacity gives MoreData with the size needed
        // and the buffer untouched; a missing value (or a closed key) FileNotFound.
        Status queryValue(const QString &name, quint32 &type, QByteArray &buffer,
                          quint32 &size) const;
        void close() { values_ = nullptr; }

    private:
        friend class RegistryFile;
        explicit Key(const QHash<QString, Value> *values)
            : values_(values) {}
        const QHash<QString, Value> *values_ = nullptr;
    };

    RegistryFile() = default;
    // Reads the file at `path`; a missing or unreadable file gives an empty registry.
    explicit RegistryFile(const QString &path);
    // Reads the contents of a file.
    static RegistryFile fromBytes(const QByteArray &contents);

    // Opens a key below a root ("SOFTWARE\Microsoft\Shared Tools"); an empty
    // path opens the root itself. A key that is not there gives a closed Key and
    // FileNotFound. The file grants every access, so no access mask is asked for.
    Status openKey(Root root, const QString &subKey, Key &key) const;

private:
    void parse(const QByteArray &contents);
    static QString keyId(Root root, const QString &subKey, bool *valid);

    QSet<QString> keys_;                           // every key, folded, with its root
    QHash<QString, QHash<QString, Value>> values_; // folded key -> folded name -> value
    QHash<QString, Value> noValues_;               // what an existing key without values holds
};
