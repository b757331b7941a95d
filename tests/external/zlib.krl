# zlib: checksums of strings and bytes, and buffers that are filled in place.
d := proc(f) define_external(f, args[2..-1], LIB = "libz.so.1") end proc:
Bytes := ARRAY(1..n, integer[1]):
crc32 := d('crc32', crc::integer[8], bytes::string[], n::integer[4], RETURN::integer[8]):
crc32(0, "123456789", 9) = 3421780262;
adler := define_external('adler32', a::integer[8], bytes::Bytes, n::integer[4], RETURN::integer[8], LIB = "libz.so.1"):
data := Array(1..1000, i -> irem(i, 7), datatype = integer[1]):
adler(1, data, 1000);
bound := d('compressBound', n::integer[8], RETURN::integer[8]):
compress := d('compress', dest::ARRAY(1..room, integer[1]), n::REF(integer[8]), source::ARRAY(1..m, integer[1]), m::integer[8], room::NO_PASS(integer[4]), RETURN::integer[4]):
uncompress := d('uncompress', dest::ARRAY(1..room, integer[1]), n::REF(integer[8]), source::ARRAY(1..room2, integer[1]), m::integer[8], room::NO_PASS(integer[4]), room2::NO_PASS(integer[4]), RETURN::integer[4]):
room := bound(1000): packed := Array(1..room, datatype = integer[1]): used := room:
compress(packed, 'used', data, 1000, room); evalb(used < 100);
back := Array(1..1000, datatype = integer[1]): size := 1000:
uncompress(back, 'size', packed, used, 1000, room), size;
evalb(adler(1, back, 1000) = adler(1, data, 1000)), EqualEntries(back, data);
packed[5] := packed[5] + 1: uncompress(back, 'size', packed, used, 1000, room);
version := d('zlibVersion', RETURN::string[]): SearchText(".", version()) > 0;
