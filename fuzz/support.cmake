# The e-mail address scanner and the stored path segment reader: any input
# is accepted or refused with the library's own errors, never a crash.
tarnwick_fuzzer(EmailAddressFuzzer LIBS quillbox)
tarnwick_fuzzer(SegmentDecodingFuzzer LIBS plumbline quillbox)
