// Which IPv6 address texts the system accepts, and their compressed form.
#pragma once

/**
 * Decides whether a text is an acceptable IPv6 address and rewrites it in its compressed form. Stricter than the
 * address grammar (RFC 4291, 2.2): refused are texts that begin or end with a colon, and a first or last group of
 * zeros.
 * @param address writable text in a buffer of at least 40 bytes; unchanged when refused
 * @return true when accepted; false for null too
 */
bool ipv6Address_validation(char* address);
