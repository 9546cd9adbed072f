// The author set in the user's preferences.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class DzAuthor {
public:
    DzAuthor() {}
    DzAuthor(const QString& name, const QString& email, const QString& url)
        : _name(name), _email(email), _url(url)
    {
    }

    QString getName() const { return _name; }
    QString getEmail() const { return _email; }
    QString getURL() const { return _url; }
    bool isValid() const { return !_name.isEmpty(); }

private:
    QString _name, _email, _url;
};
