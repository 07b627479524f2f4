// EntityExtractor.h - finds the entities of a configuration in a layout's text and marks
// the words they cover.
#pragma once

#include "dataextract/EntityConfiguration.h"

#include <string>

namespace qent::text::layout {
class Node;
}

namespace qent::dataextract {

// Each page's text is built from its words (one blank between the words of a line, a line
// feed between lines) and searched with every entity type in configuration order; a match
// whose validator fails is cut back word by word from its end until it passes or nothing is
// left. A match covering a word that an earlier match took is dropped, so the order of the
// configuration is its priority. When a pattern has a capturing group, the entity is what
// the first group matched.
//
// Entities are numbered from 1 in document order; every word of entity n of type T gets
// the entity mark "T n" and T's sensibility (other words are left as they are). Returns
// {"entities":[{"height","id","left","page","text","top","type","width","words"}, ...]}
// with members in ascending key order; "words" lists the words' ids ("#<page>.<n>", the
// n-th word of the page, for a word without id).
std::string extractEntities(text::layout::Node& root, const EntityConfiguration& configuration);

}  // namespace qent::dataextract
