// ReadOptions.h - what a caller asks of a reader beyond the bytes themselves.
//
// Every reader receives the same options and takes what concerns it, so an opt-in reading
// mode of one format needs no new way into the readers.
#pragma once

namespace qent::io {

struct ReadOptions {};

}  // namespace qent::io
