// digest.cpp: MD5 (RFC 1321) by nettle, for names, not for security. Nothing here raises.
#include <nettle/md5.h>

#include "core/ort_core.h"

static_assert(sizeof(md5_ctx) <= sizeof(ort_md5::state) && alignof(md5_ctx) <= alignof(ort_md5));

static md5_ctx *context(ort_md5 *md5) { return reinterpret_cast<md5_ctx *>(md5->state); }

void ort_MD5_Init(ort_md5 *md5) { md5_init(context(md5)); }

void ort_MD5_Update(ort_md5 *md5, const void *bytes, size_t length) {
  md5_update(context(md5), length, static_cast<const uint8_t *>(bytes));
}

void ort_MD5_Final(unsigned char digest[16], ort_md5 *md5) {
  md5_digest(context(md5), MD5_DIGEST_SIZE, digest);
}
