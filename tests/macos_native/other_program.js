// Another program for the tests. What it does to the pasteboard and the keyboard, and what it reports, does not depend
// on any code of this project.
//
//     copy TYPE=HEX...   writes one item with these types and bytes to the pasteboard
//     read TYPE          prints the bytes of the type in hexadecimal, or "none"
//     name PROCESS       prints the display name of a running application
//     press KEY          presses a key

ObjC.import("AppKit");
ObjC.import("CoreGraphics");

const latin1 = 5; // One character for each byte.

function dataFrom(hex) {
    const bytes = (hex.match(/../g) || []).map((digits) => String.fromCharCode(parseInt(digits, 16)));
    return $(bytes.join("")).dataUsingEncoding(latin1);
}

function hexFrom(data) {
    const bytes = ObjC.unwrap($.NSString.alloc.initWithDataEncoding(data, latin1));
    return Array.from(bytes, (byte) => byte.charCodeAt(0).toString(16).padStart(2, "0")).join("");
}

const commands = {
    copy(...entries) {
        const item = $.NSPasteboardItem.alloc.init;
        for (const entry of entries) {
            const [type, hex] = entry.split("=");
            item.setDataForType(dataFrom(hex), type);
        }
        const pasteboard = $.NSPasteboard.generalPasteboard;
        pasteboard.clearContents;
        if (!pasteboard.writeObjects($([item]))) {
            throw new Error("the pasteboard refused the item");
        }
        return "";
    },

    read(type) {
        const data = $.NSPasteboard.generalPasteboard.dataForType(type);
        return data.isNil() ? "none" : hexFrom(data);
    },

    name(process) {
        return $.NSRunningApplication.runningApplicationWithProcessIdentifier(Number(process)).localizedName.js;
    },

    press(key) {
        for (const down of [true, false]) {
            $.CGEventPost($.kCGSessionEventTap, $.CGEventCreateKeyboardEvent($(), Number(key), down));
        }
        return "";
    },
};

function run(argv) {
    return commands[argv[0]](...argv.slice(1));
}
