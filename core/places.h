// places.h: open addressing, the one way in which the library keeps what it looks up by a key: tags
// and chunks of memory, and all names (name_index.cpp). Linear probing; nothing here raises.
// Whoever owns the places keeps some of them free.
#ifndef ORT_PLACES_H
#define ORT_PLACES_H

#include <stddef.h>
#include <stdlib.h>

// Place tells whether it is free (a zeroed one is) and its home, where the search for it begins.
template <class Place> struct ort_places {
  Place *places;
  size_t capacity; // a power of 2; 0: there are none yet

  // The place that matches, or the free one where it would be. No free place may match.
  template <class Matches> Place *find(size_t home, Matches &&matches) const {
    size_t i = home & (capacity - 1);
    while (!matches(places[i]) && !places[i].is_free()) i = (i + 1) & (capacity - 1);
    return &places[i];
  }

  // For a place that is not there yet.
  Place *find_free(size_t home) const {
    return find(home, [](const Place &) { return false; });
  }

  // Backward-shift deletion: what lies after the gap moves into it, unless its home does, too.
  void remove(Place *place) {
    const size_t mask = capacity - 1;
    size_t gap = static_cast<size_t>(place - places);
    for (size_t i = (gap + 1) & mask; !places[i].is_free(); i = (i + 1) & mask) {
      if (((i - places[i].home()) & mask) < ((i - gap) & mask)) continue;
      places[gap] = places[i];
      gap = i;
    }
    places[gap] = {};
  }

  // Copies all places of smaller to the zeroed ones of this.
  void take(const ort_places &smaller) {
    for (size_t i = 0; i < smaller.capacity; ++i) {
      const Place &place = smaller.places[i];
      if (!place.is_free()) *find_free(place.home()) = place;
    }
  }

  // Doubles places that come from calloc; there are least to begin with. False: memory is short.
  bool grow(size_t least) {
    ort_places larger = {nullptr, capacity ? capacity * 2 : least};
    larger.places = static_cast<Place *>(calloc(larger.capacity, sizeof(Place)));
    if (!larger.places) return false;
    larger.take(*this);
    free(places);
    *this = larger;
    return true;
  }
};

#endif
