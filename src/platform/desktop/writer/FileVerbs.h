#pragma once

#include <cstdint>

// The two things that the writer does with a file of another user's, each for one file alone that
// the user confirmed, in a process of its own:
//
//   murn-attribute-writer move-to-trash DEVICE INODE PATH TRASH NAME
//   murn-attribute-writer remove DEVICE INODE PATH
//
// DEVICE and INODE (decimal) say which file it must be; PATH and TRASH (the "files" folder of a
// trash of the caller's) are absolute and without links, and every byte of them and of NAME that
// is no letter, digit or one of "/._-" is %XX, so that what pkexec shows and logs is plain text.
namespace FileVerbs {

// The status to answer: 0 done, above 0 the errno, below 0 an AttributeWriter::Refusal.
std::int32_t run(int count, char **arguments);

} // namespace FileVerbs
