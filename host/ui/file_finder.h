// Finding files in all content folders.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace openhost {

class ContentScan;

/// A field for words, a choice of kinds and a star for favourites. The folders are gone through in the
/// background when something is wanted for the first time, and what was found is looked through a moment
/// after the last key, so that typing is never held up.
class FileFinder : public QWidget {
    Q_OBJECT
public:
    explicit FileFinder(QWidget* parent = nullptr);
    ~FileFinder() override;

    /// Whether anything is wanted; if not, no file is found.
    bool isActive() const;
    /// Those that have every word in their path below the content folder, by name.
    const QStringList& files() const { return _files; }
    /// Nothing is wanted any more.
    void clear();

public slots:
    void rescan(); ///< the folders or the files in them have changed
    void refilter();

signals:
    void changed(); ///< of the files found, or of being active

private slots:
    void filterSoon();

private:
    struct Known;
    void takeFound();
    bool suits(const Known& file) const;
    void tell();

    QLineEdit* _words;
    QComboBox* _kind;
    QToolButton* _favorites;
    QLabel* _state;
    QTimer _soon, _rest; ///< after a key, and between two looks at what was found meanwhile
    int _lastMs = 0;     ///< that the last look took
    std::unique_ptr<ContentScan> _scan;
    std::vector<Known> _known;
    QStringList _wanted; ///< words
    QStringList _files;
};

} // namespace openhost
