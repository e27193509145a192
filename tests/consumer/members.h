// Every member of the library, as this program sees it.
#pragma once

#include <cstddef>

namespace consumer {

// How many members the tables of the installed headers have. Each of them is linked.
std::size_t members_of_headers();

// How many the catalogue within the library tells.
std::size_t members_of_catalogue();

}  // namespace consumer
