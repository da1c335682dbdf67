import SwiftUI

@main
struct SundialApp: App {
    var body: some Scene {
        WindowGroup { DialView() }
    }
}
