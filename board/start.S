@ start: from the first instruction to C++. Parks the other cores, gives every mode a stack, switches the floating-point unit and
@ the MMU on, clears what has to be zero, and calls Board_Run (Board_Start.cpp). Exceptions come back here and leave for
@ Board_Exception (Board_Exceptions.cpp), interrupts for whoever called board::SetInterrupt.
@
@ Memory (board.ld):  code and constants, read-only | data, zeroed data, heap -> ... <- stack | everything else: devices
    .syntax unified
    .cpu    cortex-a9
    .fpu    neon
    .arm

    .set    MODE_FIQ, 0x11
    .set    MODE_IRQ, 0x12
    .set    MODE_SVC, 0x13
    .set    MODE_ABT, 0x17
    .set    MODE_UND, 0x1B
    .set    MODE_SYS, 0x1F

@ ---- vectors ------------------------------------------------------------------------------------------------------------------

    .section .vectors, "ax", %progbits
    .balign 32
    .global _start
    .type   _start, %function
_start:
    b       reset
    b       undefined
    b       supervisor
    b       prefetch_abort
    b       data_abort
    b       unused
    b       interrupt
    b       unused

@ ---- reset --------------------------------------------------------------------------------------------------------------------

    .text
    .type   reset, %function
reset:
    mrc     p15, 0, r0, c0, c0, 5           @ which core this is
    ands    r0, r0, #3
    bne     park

    cpsid   if
    ldr     r0, =board_exception_stack
    cps     #MODE_UND
    mov     sp, r0
    cps     #MODE_ABT
    mov     sp, r0                          @ shared: none of these two returns
    cps     #MODE_SVC
    ldr     sp, =board_supervisor_stack
    cps     #MODE_IRQ
    ldr     sp, =board_interrupt_stack
    cps     #MODE_FIQ
    mov     sp, r0
    cps     #MODE_SYS                       @ the program's own: privileged, with a link register that interrupts leave alone
    ldr     sp, =board_stack

    ldr     r0, =_start
    mcr     p15, 0, r0, c12, c0, 0          @ vectors

    mrc     p15, 0, r0, c1, c0, 2           @ VFP and NEON, all of it, for everybody
    orr     r0, r0, #0x00F00000
    bic     r0, r0, #0xC0000000
    mcr     p15, 0, r0, c1, c0, 2
    isb
    mov     r0, #0x40000000
    vmsr    fpexc, r0
    mov     r0, #0                          @ round to nearest; denormals are numbers
    vmsr    fpscr, r0

    bl      clear
    bl      map_memory
    b       Board_Run
    .ltorg

park:
    wfi
    b       park

@ Zeroes .bss and paints the stack, so that its high-water mark can be read.
    .type   clear, %function
clear:
    ldr     r0, =board_zero_begin
    ldr     r1, =board_zero_end
    mov     r2, #0
1:  cmp     r0, r1
    strlo   r2, [r0], #4
    blo     1b
    ldr     r0, =board_stack_limit
    ldr     r1, =board_stack
    ldr     r2, =0x57AC57AC
2:  cmp     r0, r1
    strlo   r2, [r0], #4
    blo     2b
    bx      lr
    .ltorg

@ A flat map in sections of one megabyte, then MMU, caches and branch prediction on.
    .set    SECTION_CODE,   0x940E          @ normal, write-back, read-only
    .set    SECTION_RAM,    0x1C1E          @ normal, write-back, never executed
    .set    SECTION_DEVICE, 0x0C16          @ device, never executed
    .type   map_memory, %function
map_memory:
    push    {r4, lr}
    ldr     r0, =board_map
    mov     r1, #0                          @ the section, counted in megabytes
    ldr     r2, =board_code_begin
    ldr     r3, =board_code_end
    ldr     r4, =board_ram_end
    lsr     r2, r2, #20
    lsr     r3, r3, #20
    lsr     r4, r4, #20
1:  movw    r12, #SECTION_DEVICE
    cmp     r1, #0
    moveq   r12, #0                         @ a null pointer is an exception
    beq     2f
    cmp     r1, r2
    blo     2f
    cmp     r1, r3
    movwlo  r12, #SECTION_CODE
    blo     2f
    cmp     r1, r4
    movwlo  r12, #SECTION_RAM
2:  cmp     r12, #0
    orrne   r12, r12, r1, lsl #20
    str     r12, [r0], #4
    add     r1, r1, #1
    cmp     r1, #4096
    blo     1b

    @ The data cache holds anything after reset: invalidated by set and way (32 KB, 4 ways, lines of 32 bytes).
    mov     r0, #0
3:  mov     r1, #0
4:  orr     r2, r1, r0, lsl #5
    mcr     p15, 0, r2, c7, c6, 2
    adds    r1, r1, #0x40000000
    bne     4b
    add     r0, r0, #1
    cmp     r0, #256
    blo     3b

    mov     r0, #0
    mcr     p15, 0, r0, c7, c5, 0           @ instruction cache
    mcr     p15, 0, r0, c7, c5, 6           @ branch prediction
    mcr     p15, 0, r0, c8, c7, 0           @ TLB
    mcr     p15, 0, r0, c2, c0, 2           @ one table for all addresses
    ldr     r0, =board_map
    mcr     p15, 0, r0, c2, c0, 0
    mov     r0, #1                          @ domain 0 obeys the table
    mcr     p15, 0, r0, c3, c0, 0
    dsb
    isb
    mrc     p15, 0, r0, c1, c0, 0
    ldr     r1, =0x1805                     @ MMU, data cache, branch prediction, instruction cache
    orr     r0, r0, r1
    mcr     p15, 0, r0, c1, c0, 0
    isb
    pop     {r4, pc}
    .ltorg

@ ---- exceptions ---------------------------------------------------------------------------------------------------------------

@ Board_Exception(kind, address of the instruction). Nobody comes back.
    .macro  report kind, offset
    sub     r1, lr, #\offset
    mov     r0, #\kind
    b       Board_Exception
    .endm

    .type   undefined, %function
undefined:
    report  1, 4
    .type   supervisor, %function
supervisor:
    report  2, 4
    .type   prefetch_abort, %function
prefetch_abort:
    report  3, 4
    .type   data_abort, %function
data_abort:
    report  4, 8
    .type   unused, %function
unused:
    report  5, 4

@ The interrupted task's registers go onto its own stack, the floating-point ones too: drawing code keeps pixels in them. The
@ function that was set gets that stack pointer and returns the one of the task to go on with.
    .type   interrupt, %function
interrupt:
    sub     lr, lr, #4
    srsdb   sp!, #MODE_SYS                  @ return address and status
    cps     #MODE_SYS
    push    {r0-r12, lr}
    vmrs    r0, fpscr
    push    {r0, r1}                        @ r1 keeps the stack a multiple of eight
    vpush   {d0-d15}
    vpush   {d16-d31}
    mov     r0, sp
    ldr     r1, =board_interrupt
    ldr     r1, [r1]
    bic     r2, sp, #7
    mov     sp, r2
    cmp     r1, #0
    beq     1f
    blx     r1
1:  mov     sp, r0
    vpop    {d16-d31}
    vpop    {d0-d15}
    pop     {r0, r1}
    vmsr    fpscr, r0
    pop     {r0-r12, lr}
    rfeia   sp!
    .ltorg

    .bss
    .balign 4
    .global board_interrupt
board_interrupt:
    .space  4

    .section .map, "aw", %nobits
    .balign 16384
    .global board_map
board_map:
    .space  16384
