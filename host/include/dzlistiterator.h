// Java-style iterators over a copied list.
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

/// Runs over the list as it was when the iterator was made; next() past the end is a programming error.
template <class T>
class DzTListIterator {
public:
    explicit DzTListIterator(const QList<T*>& list) : _list(list), _position(0) {}

    bool hasNext() const { return _position < _list.size(); }
    T* next()
    {
        Q_ASSERT(hasNext());
        return _list.at(_position++);
    }

private:
    QList<T*> _list;
    int _position;
};
