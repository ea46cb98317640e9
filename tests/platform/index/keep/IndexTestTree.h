#pragma once

#include "IndexSource.h"

#include <QByteArray>
#include <random>
#include <string>
#include <vector>

// A tree of files that somebody works on, at random but the same for the same seed: files made,
// written, saved by renaming, renamed, rated, deleted; folders made, moved, deleted whole. Names
// that are no UTF-8 are among them. Each text file that is not empty holds one word of its own.
// Threads: one at a time.
class IndexTestTree
{
public:
    IndexTestTree(const QByteArray &root, unsigned seed) : m_root(root), m_random(seed) {}

    // Folders and files to begin with.
    void grow(int files);
    void change(); // one step

    const QByteArray &root() const { return m_root; }
    // A random number below `limit`, for the test's own choices.
    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

private:
    QByteArray folder();
    QByteArray file();
    QByteArray newName();
    void write(const QByteArray &path);
    void rate(const QByteArray &path);
    void changeFolder();
    void look();

    const QByteArray m_root;
    std::mt19937 m_random;
    std::vector<QByteArray> m_folders; // as they were when looked at last
    std::vector<QByteArray> m_files;
    int m_words = 0;
    int m_steps = 0;
};

// Where the index is not what is on disk: rows, facts, attributes, and for each text file that its
// word is found and nothing else by it. Empty: right. The tree must be at rest and imported.
std::string indexDisagreement(IndexSource &source, const QByteArray &root);
