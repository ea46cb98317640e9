#pragma once

#include <cstdint>
#include <linux/limits.h>
#include <string_view>

// What XPAuthorisation and murn-attribute-writer say to each other over the writer's standard
// input and output. Both run on one machine and are built together: numbers are in host order.
//
// The writer greets once it runs with its rights. Then, for each request (a Request, followed by
// the name, the path and the value, none of them terminated), it answers one status, a
// std::int32_t: 0 done, above 0 the errno of the failed call, below 0 a Refusal. After a frame
// over the limits it refuses and ends, as what follows cannot be told apart any more.
namespace AttributeWriter {

// The first argument that asks for this; FileVerbs.h has the others.
inline constexpr char sessionArgument[] = "attributes";

inline constexpr char greeting[4] = {'M', 'A', 'W', '1'};

enum class Operation : std::uint32_t { Write = 1, Remove = 2 };

struct Request
{
    Operation operation;
    std::uint32_t nameSize;
    std::uint32_t pathSize;
    std::uint32_t valueSize;
};

enum Refusal : std::int32_t { RefusedName = -1, RefusedPath = -2, RefusedFrame = -3 };

inline constexpr std::uint32_t maximumNameSize = XATTR_NAME_MAX;
inline constexpr std::uint32_t maximumPathSize = PATH_MAX - 1;
inline constexpr std::uint32_t maximumValueSize = 4096;

// Every name that may be written begins so and goes on with letters, digits and underscores, or
// is one of those under which the desktop keeps the same facts.
inline constexpr char namePrefix[] = "user.com.apple.metadata:kMDItem";
inline constexpr std::string_view desktopNames[] = {"user.xdg.tags", "user.xdg.comment",
                                                    "user.baloo.rating"};

} // namespace AttributeWriter
