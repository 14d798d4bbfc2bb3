// Puts the networks' files into the program as they are. The assembler looks for them in the
// include folders.

#define EMBED(name, file)               \
  .global wavescribe_##name##_begin;    \
  .global wavescribe_##name##_end;      \
  .balign 64;                           \
  wavescribe_##name##_begin:            \
  .incbin file;                         \
  wavescribe_##name##_end:              \
  .byte 0

  .section .rodata
EMBED(hand_finder, "hand_finder.onnx")
EMBED(hand_landmarks, "hand_landmarks.onnx")

  .section .note.GNU-stack, "", %progbits
