# one_member: one.fa as a gzip member. The text is stored as it is: the head of its block has its length,
# 20, and the complement of that. After the text come its CRC-32 and its length again.
one_member() {
  printf '\x1f\x8b\x08\0\0\0\0\0\0\x03'
  printf '\x01\x14\x00\xeb\xff>one\nGTACACACACACGT\n'
  printf '\x66\x23\x44\xc1\x14\x00\x00\x00'
}

# empty_member: a gzip member without a text, as zlib writes it.
empty_member() { printf '\x1f\x8b\x08\0\0\0\0\0\0\x03\x03\0\0\0\0\0\0\0\0\0'; }
