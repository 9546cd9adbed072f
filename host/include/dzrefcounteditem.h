// Objects shared by counting.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

/// Born with a count of 0; the last unref() deletes it.
class DzRefCountedItem : public QObject {
    Q_OBJECT
public:
    DzRefCountedItem();
    ~DzRefCountedItem();

    void ref();
    void unref();
    int getRefCount() const { return _count; }

private:
    Q_DISABLE_COPY(DzRefCountedItem)
    int _count;
};

/// Keeps a counted item alive.
template <class T>
class DzTRefPtr {
public:
    DzTRefPtr(T* item = 0) : _item(item) { acquire(); }
    DzTRefPtr(const DzTRefPtr& other) : _item(other._item) { acquire(); }
    ~DzTRefPtr() { release(); }
    DzTRefPtr& operator=(const DzTRefPtr& other)
    {
        DzTRefPtr copy(other);
        T* const item = copy._item;
        copy._item = _item;
        _item = item;
        return *this;
    }

    T* get() const { return _item; }
    T* operator->() const { return _item; }
    T& operator*() const { return *_item; }
    operator T*() const { return _item; }

private:
    void acquire()
    {
        if (_item)
            _item->ref();
    }
    void release()
    {
        if (_item)
            _item->unref();
    }

    T* _item;
};
