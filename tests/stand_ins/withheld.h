// What the host may hold back.
// SPDX-License-Identifier: MIT

#pragma once

/// In this program some functions of the host give null where they are told to. The open host never does; the
/// closed one may.
namespace withheld {

inline bool propertyGroups = false;
inline bool firstModifier = false;
/// A null in front of the others, in the lists of all nodes and of those selected.
inline bool firstNode = false;
inline bool nestedOptions = false;

/// For the time that it lives.
class Withholding {
public:
    explicit Withholding(bool& answer) : _answer(answer) { _answer = true; }
    ~Withholding() { _answer = false; }
    Withholding(const Withholding&) = delete;
    Withholding& operator=(const Withholding&) = delete;

private:
    bool& _answer;
};

} // namespace withheld
