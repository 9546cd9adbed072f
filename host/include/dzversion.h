// Version numbers of four 16-bit parts.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class DzVersion {
public:
    DzVersion() : _packed(0) {}
    DzVersion(quint16 major, quint16 minor, quint16 revision, quint16 build)
        : _packed((static_cast<quint64>(major) << 48) | (static_cast<quint64>(minor) << 32) |
                  (static_cast<quint64>(revision) << 16) | build)
    {
    }
    explicit DzVersion(quint64 packed) : _packed(packed) {}

    quint16 getMajorVersion() const { return static_cast<quint16>(_packed >> 48); }
    quint16 getMinorVersion() const { return static_cast<quint16>(_packed >> 32); }
    quint16 getRevisionNumber() const { return static_cast<quint16>(_packed >> 16); }
    quint16 getBuildNumber() const { return static_cast<quint16>(_packed); }
    quint64 getVersionNumber() const { return _packed; }
    /// All four parts, such as "4.0.0.0".
    QString getLongVersionString() const;
    bool isValid() const { return _packed != 0; }

    bool operator==(const DzVersion& other) const { return _packed == other._packed; }
    bool operator!=(const DzVersion& other) const { return _packed != other._packed; }
    bool operator<(const DzVersion& other) const { return _packed < other._packed; }
    bool operator<=(const DzVersion& other) const { return _packed <= other._packed; }
    bool operator>(const DzVersion& other) const { return _packed > other._packed; }
    bool operator>=(const DzVersion& other) const { return _packed >= other._packed; }

private:
    quint64 _packed;
};
